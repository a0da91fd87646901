// The front end for C++ after its installation.
#include <orvane/log.hpp>

#include <cstdlib>

int main() {
    const orvane::Logger logger{{.domain = 121, .application_kind = "consumer"}};
    orvane::info("{} is {}", "answer", 42);
    QEL_KX_Statistics statistics{};
    QEL_KX_Orvane_getStatistics(&statistics);
    return statistics.accepted > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

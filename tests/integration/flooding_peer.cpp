// An application that logs as fast as its logger can publish, while the middleware reports to the
// logger's device all that it does.
//
//   flooding_peer DOMAIN COUNT
//
// Answers "> ready", logs COUNT messages of the category "flood" once it gets a line, and ends with
// one of the category "com.qel.end" when its input ends. After a tenth of the messages and after
// the last one it prints "> memory KIB", its resident memory.

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>
#include <thread>
#include <utility>

#include "orvane/orvane.h"
#include "pexa/pexa.h"
#include "tests/integration/peer_logger.hpp"
#include "tests/integration/peer_protocol.hpp"

namespace orvane::tests {
namespace {

constexpr int queue_size = 4096;

void tell(const std::string& text) {
    std::cout << (std::string{answer_mark} + text + '\n') << std::flush;
}

long resident_kib() {
    std::ifstream file{"/proc/self/statm"};
    long total = 0;
    long resident = 0;
    file >> total >> resident;
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

DDS_Long queued(QEL_KX_MessageQueue& queue) {
    QELOsapiSemaphore_take(queue.mutex, nullptr);
    const DDS_Long count = queue.list.count;
    QELOsapiSemaphore_give(queue.mutex);
    return count;
}

void wait_for_queue(int longest) {
    QEL_KX_MessageQueue& queue = *QEL_KX_Orvane_getMessageQueue();
    while (queued(queue) > longest) {
        std::this_thread::sleep_for(std::chrono::milliseconds{1});
    }
}

void flood(QEL_KX_Orvane* logger, int count) {
    constexpr int pause = 512;
    for (int i = 0; i < count; ++i) {
        if (i % pause == 0) {
            wait_for_queue(queue_size / 2);
        }
        QEL_KX_Orvane_logMessageWithLevelCategory(logger, QEL_KX_LEVEL_INFO, "hello", "flood");
    }
    wait_for_queue(0);
    tell("memory " + std::to_string(resident_kib()));
}

bool run(int domain_id, int count) {
    OptionsPointer options{QEL_KX_Options_createDefault()};
    QEL_KX_Options_setDomainId(options.get(), domain_id);
    QEL_KX_Options_setFilterLevel(options.get(), QEL_KX_LEVEL_TRACE);
    QEL_KX_Options_setQueueSize(options.get(), queue_size);
    PEXA_Config_Logger_set_verbosity(PEXA_Config_Logger_get_instance(),
                                     PEXA_CONFIG_LOG_VERBOSITY_STATUS_ALL);
    PeerLogger logger;
    if (!logger.start(std::move(options))) {
        return false;
    }
    tell("ready");
    std::string line;
    std::getline(std::cin, line);
    flood(logger.instance(), count / 10);
    flood(logger.instance(), count - count / 10);
    QEL_KX_Orvane_logMessageWithLevelCategory(logger.instance(), QEL_KX_LEVEL_INFO, "",
                                              "com.qel.end");
    std::cin.get();
    return true;
}

}  // namespace
}  // namespace orvane::tests

int main(int argc, char** argv) {
    return argc == 3 && orvane::tests::run(std::stoi(argv[1]), std::stoi(argv[2])) ? EXIT_SUCCESS
                                                                                   : EXIT_FAILURE;
}

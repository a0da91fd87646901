// An application in C++20 that knows only what is installed: owns the options by a unique_ptr,
// logs at every level and from a second thread.

#include <orvane/orvane.h>

#include <cstdio>
#include <memory>
#include <thread>

namespace {

struct DeleteOptions {
    void operator()(QEL_KX_Options* options) const { QEL_KX_Options_delete(options); }
};

bool log_everything(QEL_KX_Orvane* logger) {
    bool good = true;
    for (const auto log :
         {QEL_KX_Orvane_fatal, QEL_KX_Orvane_severe, QEL_KX_Orvane_error, QEL_KX_Orvane_warning,
          QEL_KX_Orvane_notice, QEL_KX_Orvane_info, QEL_KX_Orvane_debug, QEL_KX_Orvane_trace}) {
        good = good && log(logger, "hello from C++") == DDS_RETCODE_OK;
    }
    return good;
}

}  // namespace

int main() {
    const std::unique_ptr<QEL_KX_Options, DeleteOptions> options(QEL_KX_Options_createDefault());
    QEL_KX_Options_setDomainId(options.get(), 51);
    if (!QEL_KX_Orvane_setOptions(options.get())) {
        std::fputs("consumer_cpp: options refused\n", stderr);
        return 1;
    }
    QEL_KX_Orvane* logger = QEL_KX_Orvane_getInstance();
    if (logger == nullptr) {
        std::fputs("consumer_cpp: start failed\n", stderr);
        return 1;
    }
    bool elsewhere = false;
    std::thread([&] { elsewhere = log_everything(logger); }).join();
    const bool here = log_everything(logger);
    const bool stopped = QEL_KX_Orvane_finalizeInstance() == DDS_RETCODE_OK;
    if (!here || !elsewhere || !stopped) {
        std::fputs("consumer_cpp: logging failed\n", stderr);
        return 1;
    }
    return 0;
}

// A route planner that logs, in C++: options held by RAII, a filter level, several threads.
#include <orvane/orvane.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>

namespace {

using namespace std::chrono_literals;

struct DeleteOptions {
    void operator()(QEL_KX_Options* options) const { QEL_KX_Options_delete(options); }
};

/// The process's logger for as long as the object lives.
class Logger {
public:
    Logger(int domain_id, const std::string& kind) : options_(QEL_KX_Options_createDefault()) {
        QEL_KX_Options_setDomainId(options_.get(), domain_id);
        QEL_KX_Options_setApplicationKind(options_.get(), kind.c_str());
        QEL_KX_Options_setQueueSize(options_.get(), 512);
        QEL_KX_Options_setFilterLevel(options_.get(), QEL_KX_LEVEL_INFO);
        QEL_KX_Orvane_setOptions(options_.get());
        instance_ = QEL_KX_Orvane_getInstance();
    }
    ~Logger() { QEL_KX_Orvane_finalizeInstance(); }
    Logger(const Logger&) = delete;
    Logger& operator=(const Logger&) = delete;

    bool is_running() const { return instance_ != nullptr; }

    void log(int level, const std::string& category, const std::string& text) {
        QEL_KX_Orvane_logMessageWithLevelCategory(instance_, level, text.c_str(), category.c_str());
        if (level <= QEL_KX_LEVEL_INFO) {
            ++published_;
        }
    }
    int published() const { return published_; }

private:
    std::unique_ptr<QEL_KX_Options, DeleteOptions> options_;
    QEL_KX_Orvane* instance_ = nullptr;
    std::atomic<int> published_{0};
};

void plan(Logger& logger, const std::string& vehicle) {
    for (int leg = 1; leg <= 20; ++leg) {
        logger.log(QEL_KX_LEVEL_DEBUG, "route." + vehicle, "expanding leg " + std::to_string(leg));
        logger.log(QEL_KX_LEVEL_INFO, "route." + vehicle,
                   "leg " + std::to_string(leg) + " takes " + std::to_string(40 - leg) + " s");
        std::this_thread::sleep_for(250ms);
    }
    logger.log(QEL_KX_LEVEL_ERROR, "route." + vehicle, "no way around the closed gate");
}

}  // namespace

int main(int argc, char** argv) {
    const long domain_id = argc > 1 ? std::strtol(argv[1], nullptr, 10) : 0;
    Logger logger{static_cast<int>(domain_id), "planner"};
    if (!logger.is_running()) {
        return EXIT_FAILURE;
    }
    {
        std::array vehicles{std::jthread{[&] { plan(logger, "shuttle"); }},
                            std::jthread{[&] { plan(logger, "forklift"); }}};
    }
    // Finalising discards queued messages: leave the write thread the time to publish.
    std::this_thread::sleep_for(500ms);
    std::printf("logged %d\n", logger.published());
    return EXIT_SUCCESS;
}

// The modes of the program test_peer, and their logger and answers.
#pragma once

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

#include "orvane/orvane.h"
#include "tools/domain/entities.hpp"

namespace orvane::tests {

using OptionsPointer = std::unique_ptr<QEL_KX_Options, tools::Deleter<QEL_KX_Options_delete>>;

/// Where the test reads answers.
inline std::FILE* answers = stdout;

/// Prints an answer; in one piece, because the middleware's threads may print too.
inline void tell(const std::string& text) {
    std::fprintf(answers, "> %s\n", text.c_str());
    std::fflush(answers);
}

inline OptionsPointer make_options(int domain_id) {
    OptionsPointer options{QEL_KX_Options_createDefault()};
    QEL_KX_Options_setDomainId(options.get(), domain_id);
    return options;
}

/// Makes the middleware report every step.
inline void report_everything() {
    PEXA_Config_Logger_set_verbosity(PEXA_Config_Logger_get_instance(),
                                     PEXA_CONFIG_LOG_VERBOSITY_STATUS_ALL);
}

/// The process's logger. Any thread may call @ref instance and @ref log at any time.
class Logger {
public:
    ~Logger() { finish(); }

    void start(OptionsPointer options) {
        options_ = std::move(options);
        QEL_KX_Orvane_setOptions(options_.get());
        instance_ = QEL_KX_Orvane_getInstance();
        if (instance_ == nullptr) {
            std::fputs("test_peer: could not start the logger\n", stderr);
            std::exit(EXIT_FAILURE);
        }
    }
    static DDS_ReturnCode_t finish() { return QEL_KX_Orvane_finalizeInstance(); }

    void log(int level, const std::string& category, const std::string& text) {
        QEL_KX_Orvane_logMessageWithLevelCategory(instance_, level, text.c_str(), category.c_str());
    }

    /// A stale pointer once the logger has been finalised, on purpose.
    QEL_KX_Orvane* instance() const { return instance_; }

private:
    OptionsPointer options_;
    std::atomic<QEL_KX_Orvane*> instance_{nullptr};
};

// The modes of finalising_peer.cpp.
void fire_from_threads(int domain_id, int cycles);
void fire_from_listener(int domain_id, int cycles);
void trigger_until_input_ends(int domain_id);
void visit_until_input_ends(int domain_id);

}  // namespace orvane::tests

/// @file logger.hpp
/// @brief The logger as a scope. C++20, header only. <orvane/log.hpp> includes it.
#ifndef ORVANE_LOGGER_HPP
#define ORVANE_LOGGER_HPP

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <system_error>
#include <type_traits>
#include <utility>

#include "orvane/log.h"

namespace orvane {

/// Severity of a message, or what a filter lets pass. Any other number is valid, too.
enum class Level : std::int32_t {
    silent = QEL_KX_LEVEL_SILENT,  ///< of a filter that stops all of the levels below
    fatal = QEL_KX_LEVEL_FATAL,
    severe = QEL_KX_LEVEL_SEVERE,
    error = QEL_KX_LEVEL_ERROR,
    warning = QEL_KX_LEVEL_WARNING,
    notice = QEL_KX_LEVEL_NOTICE,
    info = QEL_KX_LEVEL_INFO,
    debug = QEL_KX_LEVEL_DEBUG,
    trace = QEL_KX_LEVEL_TRACE
};

/// Whether a message of that level would be published or echoed right now. A load.
inline bool is_enabled(Level level) noexcept {
    return QEL_KX_Orvane_isLevelEnabled(static_cast<DDS_Long>(level)) != 0;
}

/// How a logger starts. QEL_KX_Options tells more of each.
struct Options {
    std::int32_t domain = 0;
    /// A participant of the application instead of an own one in @ref domain. Borrowed.
    DDS_DomainParticipant* participant = nullptr;
    Level filter_level = Level::info;
    /// QoS of the logger's entities; both or none.
    std::string qos_library{};
    std::string qos_profile{};
    /// Most messages that wait for publication.
    std::int32_t queue_size = 128;
    /// Settings of the thread that publishes; NULL for the default. Copied.
    const DDS_ThreadSettings_t* thread = nullptr;
    /// What tools call the application; cut as a text is, to ORVANE_APPLICATION_KIND_BOUND bytes.
    std::string application_kind{};
    bool remote_administration = true;
    bool echo_to_stdout = false;
    bool log_infrastructure_messages = true;
    /// How long the end waits at most for messages that are on their way.
    std::chrono::milliseconds flush_timeout{500};
};

/// Why a logger was not started.
enum class StartError {
    already_running = 1,  ///< The process has a logger.
    refused_option,       ///< The value of an option is out of its range, or there is no memory.
    not_created           ///< The logger could not be created.
};

}  // namespace orvane

template <>
struct std::is_error_code_enum<orvane::StartError> : std::true_type {};

namespace orvane {
namespace detail {

class StartErrorCategory final : public std::error_category {
public:
    const char* name() const noexcept override { return "orvane"; }
    std::string message(int value) const override {
        switch (static_cast<StartError>(value)) {
            case StartError::already_running:
                return "the process has a logger";
            case StartError::refused_option:
                return "an option was refused";
            case StartError::not_created:
                return "the logger could not be created";
        }
        return "unknown error";
    }
};

}  // namespace detail

inline const std::error_category& start_error_category() noexcept {
    static const detail::StartErrorCategory category;
    return category;
}

inline std::error_code make_error_code(StartError error) noexcept {
    return {static_cast<int>(error), start_error_category()};
}

/// A logger was not started.
class Error : public std::runtime_error {
public:
    /// @param reports what the library has said of it, a line for each
    Error(std::error_code code, const std::string& reports)
        : std::runtime_error(reports.empty() ? code.message() : reports), code_(code) {}

    /// A @ref StartError.
    std::error_code code() const noexcept { return code_; }

private:
    std::error_code code_;
};

namespace detail {

/// Held while a logger starts or ends.
inline std::mutex logger_mutex;

}  // namespace detail

/// The process's logger, from the constructor to the destructor. There can be one at a time; of
/// threads that start one at the same time, one succeeds.
///
/// The end waits until the readers have what was logged before, but no longer than
/// @ref Options::flush_timeout. The library says on standard output why a start has failed, too.
class Logger {
public:
    /// @throws Error with the library's own lines
    [[nodiscard]] explicit Logger(const Options& options = {}) {
        std::error_code error;
        std::string reports;
        start(options, error, &reports);
        if (error) {
            throw Error{error, reports};
        }
    }
    /// @param error is cleared, or a @ref StartError; then the object is no logger.
    [[nodiscard]] Logger(const Options& options, std::error_code& error) {
        start(options, error, nullptr);
    }

    Logger(const Logger&) = delete;
    Logger& operator=(const Logger&) = delete;
    ~Logger() {
        if (record_) {
            flush(flush_timeout_);
            const std::lock_guard lock{detail::logger_mutex};
            // In a child process there is a copy to free, and no instance. Somebody else may have
            // ended ours, and started another one.
            if (is_running() || orvane_logger() == nullptr) {
                QEL_KX_Orvane_finalizeInstance();
            }
            forget_record();
        }
    }

    /// False when the start has failed, in a child process, and after somebody else has ended it.
    bool is_running() const noexcept {
        const QEL_KX_Orvane* const logger = orvane_logger();
        return record_ && logger != nullptr && logger->options == record_.get() &&
               QEL_KX_Orvane_isOrvaneRunning() != 0;
    }

    // While the following run, nobody else may end the logger.

    /// Waits until a viewer or another reader of the log has been found. A process that soon ends
    /// may have done so before a viewer has found it; others need not wait.
    /// @return false when the time is over
    bool wait_for_viewer(std::chrono::milliseconds timeout) const {
        return is_running() && orvane_wait_for_viewer(milliseconds(timeout)) != 0;
    }

    /// Waits until the readers have what was logged before.
    /// @return false when the time is over
    bool flush(std::chrono::milliseconds timeout) const {
        return is_running() && orvane_flush(milliseconds(timeout)) != 0;
    }

    void set_filter_level(Level level) {
        if (is_running()) {
            QEL_KX_Orvane_setFilterLevel(orvane_logger(), static_cast<DDS_Long>(level));
        }
    }

    /// What has become of the messages. Any thread, at any time.
    static QEL_KX_Statistics statistics() noexcept {
        QEL_KX_Statistics now{};
        QEL_KX_Orvane_getStatistics(&now);
        return now;
    }

private:
    struct DeleteRecord {
        void operator()(QEL_KX_Options* record) const { QEL_KX_Options_delete(record); }
    };
    using Record = std::unique_ptr<QEL_KX_Options, DeleteRecord>;

    void start(const Options& options, std::error_code& error, std::string* reports) {
        const std::lock_guard lock{detail::logger_mutex};
        QEL_KX_Orvane_takeReports(nullptr, 0);
        error.clear();
        flush_timeout_ = options.flush_timeout;
        record_ = make_record(options);
        if (!record_) {
            error = StartError::refused_option;
        } else if (QEL_KX_Orvane_setOptions(record_.get()) == 0) {
            error = StartError::already_running;
        } else if (QEL_KX_Orvane_getInstance() == nullptr) {
            error = StartError::not_created;
        } else if (!is_running()) {
            // C code has started one in between.
            error = StartError::already_running;
        }
        if (error) {
            forget_record();
            if (reports != nullptr) {
                *reports = take_reports();
            }
        }
    }

    void forget_record() {
        if (record_ &&
            __atomic_load_n(&gQEL_KX_Orvane_currentOptions, __ATOMIC_ACQUIRE) == record_.get()) {
            QEL_KX_Orvane_setOptions(nullptr);
        }
        record_.reset();
    }

    static long milliseconds(std::chrono::milliseconds time) {
        const std::chrono::milliseconds longest = std::chrono::hours{24};
        return static_cast<long>(
            std::clamp(time, std::chrono::milliseconds::zero(), longest).count());
    }

    /// @return NULL when an option was refused
    static Record make_record(const Options& options) {
        Record record{QEL_KX_Options_createDefault()};
        QEL_KX_Options* const self = record.get();
        if (self == nullptr) {
            return nullptr;
        }
        const auto set_if = [self](bool is_given, auto set, auto value) {
            return !is_given || set(self, value) == DDS_RETCODE_OK;
        };
        const std::string kind =
            options.application_kind.substr(0, orvane_utf8_truncate(options.application_kind.data(),
                                                                    options.application_kind.size(),
                                                                    ORVANE_APPLICATION_KIND_BOUND));
        const bool is_accepted =
            set_if(true, QEL_KX_Options_setDomainId, options.domain) &&
            set_if(options.participant != nullptr, QEL_KX_Options_setDomainParticipant,
                   options.participant) &&
            set_if(true, QEL_KX_Options_setFilterLevel,
                   static_cast<DDS_Long>(options.filter_level)) &&
            set_if(!options.qos_library.empty(), QEL_KX_Options_setQosLibrary,
                   options.qos_library.c_str()) &&
            set_if(!options.qos_profile.empty(), QEL_KX_Options_setQosProfile,
                   options.qos_profile.c_str()) &&
            set_if(true, QEL_KX_Options_setQueueSize, options.queue_size) &&
            set_if(options.thread != nullptr, QEL_KX_Options_setThreadSettings, options.thread) &&
            set_if(!kind.empty(), QEL_KX_Options_setApplicationKind, kind.c_str()) &&
            set_if(true, QEL_KX_Options_setRemoteAdministrationEnabled,
                   QELBool{options.remote_administration}) &&
            set_if(true, QEL_KX_Options_setEchoToStdout, QELBool{options.echo_to_stdout}) &&
            set_if(true, QEL_KX_Options_setLogInfrastructureMessages,
                   QELBool{options.log_infrastructure_messages});
        return is_accepted ? std::move(record) : nullptr;
    }

    static std::string take_reports() {
        std::array<char, 512> lines;
        std::string text{lines.data(), QEL_KX_Orvane_takeReports(lines.data(), lines.size())};
        if (!text.empty() && text.back() == '\n') {
            text.pop_back();
        }
        return text;
    }

    Record record_;
    std::chrono::milliseconds flush_timeout_{};
};

}  // namespace orvane

#endif

/// @file log.hpp
/// @brief Logging calls with a checked format, and the logger as a scope. C++20, header only.
///
///     #include <orvane/log.hpp>
///
///     constexpr orvane::Category hydraulics{"hydraulics"};
///
///     int main() {
///         orvane::Logger logger{{.domain = 7, .application_kind = "pump"}};
///         orvane::info("pump {} started in {:.1f} s", id, seconds);
///         hydraulics.warning("pressure {} kPa", pressure);
///         ORVANE_DEBUG("{} valves are open", count_valves());
///     }
///
/// The calls log with the process's logger, whoever has started it: an orvane::Logger, C code, or
/// an XML configuration. Without a logger they do nothing.
///
/// The compiler checks a format against the types of the arguments. A text is formatted only if a
/// message of its level is published or echoed right now; the macros do not even evaluate their
/// arguments then. A text is cut to ORVANE_LOG_MESSAGE_BOUND bytes, in front of the UTF-8 character
/// that does not fit, and ends at a NUL. A call throws nothing, and leaves errno as it was. It
/// allocates nothing for a text of up to 127 bytes, but for what formatters of the application's
/// own types do. Any thread, at any time, except in a signal handler.
///
/// `std::format` makes the texts where the standard library has it and ORVANE_USE_FMT is not
/// defined, else {fmt} does. All files of a program agree on that.
#ifndef ORVANE_LOG_HPP
#define ORVANE_LOG_HPP

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <type_traits>
#include <utility>
#include <version>

#include "orvane/log.h"

#if defined __cpp_lib_format && !defined ORVANE_USE_FMT
#include <format>
#define ORVANE_FORMATTER std
#define ORVANE_NAMESPACE with_std_format
#else
#include <fmt/format.h>
#define ORVANE_FORMATTER fmt
#define ORVANE_NAMESPACE with_fmt
#endif

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

/// Where a call stands. Made implicitly.
struct SourceLocation {
    /// `std::source_location` is not known to every compiler of C++20.
    static constexpr SourceLocation current(const char* file = __builtin_FILE(),
                                            unsigned line = __builtin_LINE()) noexcept {
        return {file, line};
    }

    const char* file;
    unsigned line;
};

namespace detail {

inline std::atomic<bool> shows_source_location = false;

}  // namespace detail

/// Whether each text ends with the place of its call, as in "valve stuck (pump.cpp:42)". Not at
/// first. Any thread, at any time.
inline void show_source_location(bool shows) noexcept {
    detail::shows_source_location.store(shows, std::memory_order_relaxed);
}

// What was compiled with another formatter has other names, so that it cannot be mixed up.
inline namespace ORVANE_NAMESPACE {

/// A format that fits the arguments, and where it stands. Made implicitly, from a literal.
template <typename... Arguments>
struct CheckedFormat {
    template <std::convertible_to<std::string_view> Literal>
    // NOLINTNEXTLINE(google-explicit-constructor): a caller writes a literal
    consteval CheckedFormat(const Literal& text, SourceLocation call = SourceLocation::current())
        : format{text}, literal{text}, place{call} {}

    ORVANE_FORMATTER::format_string<Arguments...> format;
    std::string_view literal;
    SourceLocation place;
};

/// Keeps the compiler from deducing the arguments' types from the format.
template <typename... Arguments>
using Format = CheckedFormat<std::type_identity_t<Arguments>...>;

}  // namespace ORVANE_NAMESPACE

namespace detail {

/// The text of a message. It notes how long it would be, and keeps what is published.
class Text {
public:
    template <typename... Arguments>
    void format(const CheckedFormat<Arguments...>& format, Arguments&&... arguments) noexcept {
        try {
            const auto result = ORVANE_FORMATTER::format_to_n(
                characters_.data(), room, format.format, std::forward<Arguments>(arguments)...);
            length_ = static_cast<std::size_t>(result.size);
        } catch (const std::exception& error) {
            length_ = 0;
            append("(");
            append(error.what());
            append(") ");
            append(format.literal);
        }
    }

    void append(std::string_view text) noexcept {
        const std::size_t begin = std::min(length_, room);
        text.copy(characters_.data() + begin, room - begin);
        length_ += text.size();
    }

    /// Shortens the text as far as the place needs it.
    void append(const SourceLocation& place) noexcept {
        constexpr std::size_t longest = 255;
        std::array<char, longest + 1> text;
        const std::string_view path = place.file;
        const std::string_view name = path.substr(path.rfind('/') + 1);
        const int length = std::snprintf(text.data(), text.size(), " (%.*s:%u)",
                                         static_cast<int>(name.size()), name.data(), place.line);
        const std::size_t added = std::min(static_cast<std::size_t>(std::max(length, 0)), longest);
        cut(ORVANE_LOG_MESSAGE_BOUND - added);
        append(std::string_view{text.data(), added});
    }

    /// Ends the text. @return it, cut to what is published
    const char* c_str() noexcept {
        cut(ORVANE_LOG_MESSAGE_BOUND);
        characters_[length_] = '\0';
        return characters_.data();
    }

private:
    void cut(std::size_t bound) noexcept {
        length_ = orvane_cut(characters_.data(), length_, bound);
    }

    // One byte more than is published shows whether a character ends there.
    static constexpr std::size_t room = ORVANE_LOG_MESSAGE_BOUND + 1;

    std::size_t length_ = 0;
    std::array<char, room> characters_;
};

}  // namespace detail

inline namespace ORVANE_NAMESPACE {

/// What messages are about. It may be a constant of a namespace, and used before `main` begins. Any
/// thread.
class Category {
public:
    constexpr Category() noexcept = default;
    /// @param name is copied, up to ORVANE_LOG_CATEGORY_BOUND bytes and whole UTF-8 characters
    explicit constexpr Category(std::string_view name) noexcept {
        const std::size_t length = orvane_cut(name.data(), name.size(), ORVANE_LOG_CATEGORY_BOUND);
        std::copy_n(name.data(), length, name_.data());
    }

    constexpr const char* name() const noexcept { return name_.data(); }

    /// @name Log a formatted text
    /// @{
    template <typename... Arguments>
    void log(Level level, const Format<Arguments...>& format,
             Arguments&&... arguments) const noexcept {
        if (is_enabled(level)) {
            post(level, format.place, [&](detail::Text& text) {
                text.format(format, std::forward<Arguments>(arguments)...);
            });
        }
    }
    template <typename... Arguments>
    void fatal(const Format<Arguments...>& format, Arguments&&... arguments) const noexcept {
        log(Level::fatal, format, std::forward<Arguments>(arguments)...);
    }
    template <typename... Arguments>
    void severe(const Format<Arguments...>& format, Arguments&&... arguments) const noexcept {
        log(Level::severe, format, std::forward<Arguments>(arguments)...);
    }
    template <typename... Arguments>
    void error(const Format<Arguments...>& format, Arguments&&... arguments) const noexcept {
        log(Level::error, format, std::forward<Arguments>(arguments)...);
    }
    template <typename... Arguments>
    void warning(const Format<Arguments...>& format, Arguments&&... arguments) const noexcept {
        log(Level::warning, format, std::forward<Arguments>(arguments)...);
    }
    template <typename... Arguments>
    void notice(const Format<Arguments...>& format, Arguments&&... arguments) const noexcept {
        log(Level::notice, format, std::forward<Arguments>(arguments)...);
    }
    template <typename... Arguments>
    void info(const Format<Arguments...>& format, Arguments&&... arguments) const noexcept {
        log(Level::info, format, std::forward<Arguments>(arguments)...);
    }
    template <typename... Arguments>
    void debug(const Format<Arguments...>& format, Arguments&&... arguments) const noexcept {
        log(Level::debug, format, std::forward<Arguments>(arguments)...);
    }
    template <typename... Arguments>
    void trace(const Format<Arguments...>& format, Arguments&&... arguments) const noexcept {
        log(Level::trace, format, std::forward<Arguments>(arguments)...);
    }
    /// @}

    /// Logs a text as it is.
    void write(Level level, std::string_view text,
               SourceLocation place = SourceLocation::current()) const noexcept {
        if (is_enabled(level)) {
            post(level, place, [&](detail::Text& message) { message.append(text); });
        }
    }

private:
    // Not inlined, so that only a call that logs needs room for a text on the stack.
    template <typename Fill>
    [[gnu::noinline]] void post(Level level, const SourceLocation& place,
                                Fill fill) const noexcept {
        const int error_number = errno;
        detail::Text text;
        fill(text);
        if (detail::shows_source_location.load(std::memory_order_relaxed)) {
            text.append(place);
        }
        QEL_KX_Orvane_logMessageWithLevelCategory(orvane_logger(), static_cast<DDS_Long>(level),
                                                  text.c_str(), name());
        errno = error_number;
    }

    std::array<char, ORVANE_LOG_CATEGORY_BOUND + 1> name_ = {};
};

/// The category of what has none.
inline constexpr Category uncategorized;

/// @name Log a formatted text without a category
/// @{
template <typename... Arguments>
void log(Level level, const Format<Arguments...>& format, Arguments&&... arguments) noexcept {
    uncategorized.log(level, format, std::forward<Arguments>(arguments)...);
}
template <typename... Arguments>
void fatal(const Format<Arguments...>& format, Arguments&&... arguments) noexcept {
    log(Level::fatal, format, std::forward<Arguments>(arguments)...);
}
template <typename... Arguments>
void severe(const Format<Arguments...>& format, Arguments&&... arguments) noexcept {
    log(Level::severe, format, std::forward<Arguments>(arguments)...);
}
template <typename... Arguments>
void error(const Format<Arguments...>& format, Arguments&&... arguments) noexcept {
    log(Level::error, format, std::forward<Arguments>(arguments)...);
}
template <typename... Arguments>
void warning(const Format<Arguments...>& format, Arguments&&... arguments) noexcept {
    log(Level::warning, format, std::forward<Arguments>(arguments)...);
}
template <typename... Arguments>
void notice(const Format<Arguments...>& format, Arguments&&... arguments) noexcept {
    log(Level::notice, format, std::forward<Arguments>(arguments)...);
}
template <typename... Arguments>
void info(const Format<Arguments...>& format, Arguments&&... arguments) noexcept {
    log(Level::info, format, std::forward<Arguments>(arguments)...);
}
template <typename... Arguments>
void debug(const Format<Arguments...>& format, Arguments&&... arguments) noexcept {
    log(Level::debug, format, std::forward<Arguments>(arguments)...);
}
template <typename... Arguments>
void trace(const Format<Arguments...>& format, Arguments&&... arguments) noexcept {
    log(Level::trace, format, std::forward<Arguments>(arguments)...);
}
/// @}

/// Logs a text as it is, without a category.
inline void write(Level level, std::string_view text,
                  SourceLocation place = SourceLocation::current()) noexcept {
    uncategorized.write(level, text, place);
}

}  // namespace ORVANE_NAMESPACE

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
    std::chrono::milliseconds longest_end{500};
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

/// The process's logger, from the constructor to the destructor. There can be one at a time.
///
/// The end waits until the readers have what was logged, but no longer than
/// @ref Options::longest_end. The library says on standard output why a start has failed, too.
class Logger {
public:
    /// @throws Error with the library's own lines
    explicit Logger(const Options& options = {}) {
        std::error_code error;
        std::string reports;
        start(options, error, &reports);
        if (error) {
            throw Error{error, reports};
        }
    }
    /// @param error is cleared, or a @ref StartError; then the object is no logger.
    Logger(const Options& options, std::error_code& error) { start(options, error, nullptr); }

    Logger(const Logger&) = delete;
    Logger& operator=(const Logger&) = delete;
    ~Logger() {
        if (record_) {
            hand_over_messages();
            QEL_KX_Orvane_finalizeInstance();
        }
    }

    /// Waits until a reader of the log has been found. A process that soon ends may have done so
    /// before a viewer has found it; others need not wait.
    /// @return false when the time is over
    bool wait_for_viewer(std::chrono::milliseconds longest) const {
        return record_ && wait_until(std::chrono::steady_clock::now() + longest, [] {
                   DDS_PublicationMatchedStatus status{};
                   DDS_DataWriter_get_publication_matched_status(log_writer(), &status);
                   return status.current_count > 0;
               });
    }

private:
    struct DeleteRecord {
        void operator()(QEL_KX_Options* record) const { QEL_KX_Options_delete(record); }
    };
    using Record = std::unique_ptr<QEL_KX_Options, DeleteRecord>;

    void start(const Options& options, std::error_code& error, std::string* reports) {
        QEL_KX_Orvane_takeReports(nullptr, 0);
        record_ = make_record(options);
        if (!record_) {
            error = StartError::refused_option;
        } else if (QEL_KX_Orvane_setOptions(record_.get()) == 0) {
            error = StartError::already_running;
        } else if (QEL_KX_Orvane_getInstance() == nullptr) {
            QEL_KX_Orvane_finalizeInstance();
            error = StartError::not_created;
        } else {
            error.clear();
            longest_end_ = options.longest_end;
            return;
        }
        record_.reset();
        if (reports != nullptr) {
            *reports = take_reports();
        }
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
        const std::string kind = options.application_kind.substr(
            0, orvane_cut(options.application_kind.data(), options.application_kind.size(),
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

    /// Waits until the readers have what is queued. In a child process there is nothing to wait
    /// for.
    void hand_over_messages() const {
        const auto end = std::chrono::steady_clock::now() + longest_end_;
        const bool is_published = wait_until(end, [] {
            QEL_KX_Statistics now{};
            QEL_KX_Orvane_getStatistics(&now);
            return now.accepted == now.published + now.discarded ||
                   QEL_KX_Orvane_isOrvaneRunning() == 0;
        });
        if (is_published && QEL_KX_Orvane_isOrvaneRunning() != 0) {
            const auto left = std::chrono::duration_cast<std::chrono::nanoseconds>(
                end - std::chrono::steady_clock::now());
            constexpr std::int64_t second = 1'000'000'000;
            const std::int64_t nanoseconds = std::max(left.count(), std::int64_t{0});
            const DDS_Duration_t longest = {static_cast<DDS_Long>(nanoseconds / second),
                                            static_cast<DDS_UnsignedLong>(nanoseconds % second)};
            DDS_DataWriter_wait_for_acknowledgments(log_writer(), &longest);
        }
    }

    static DDS_DataWriter* log_writer() {
        return QEL_KX_DDSEntities_getLogMessageWriter(orvane_logger()->ddsEntities);
    }

    template <typename Condition>
    static bool wait_until(std::chrono::steady_clock::time_point end, Condition holds) {
        while (!holds()) {
            if (std::chrono::steady_clock::now() >= end) {
                return false;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds{1});
        }
        return true;
    }

    Record record_;
    std::chrono::milliseconds longest_end_{};
};

}  // namespace orvane

/// Logs in a category, if the level is enabled: ORVANE_LOG_IN(category, level, format, ...). The
/// arguments are evaluated only then. Levels above ORVANE_ACTIVE_LEVEL are not compiled.
#define ORVANE_LOG_IN(category, level, ...)                                               \
    do {                                                                                  \
        if (static_cast<DDS_Long>(level) <= static_cast<DDS_Long>(ORVANE_ACTIVE_LEVEL) && \
            ::orvane::is_enabled(level)) {                                                \
            (category).log((level), __VA_ARGS__);                                         \
        }                                                                                 \
    } while (0)

/// @name At a fixed level, without a category: ORVANE_INFO(format, ...)
/// @{
#define ORVANE_FATAL(...) ORVANE_FATAL_IN(::orvane::uncategorized, __VA_ARGS__)
#define ORVANE_SEVERE(...) ORVANE_SEVERE_IN(::orvane::uncategorized, __VA_ARGS__)
#define ORVANE_ERROR(...) ORVANE_ERROR_IN(::orvane::uncategorized, __VA_ARGS__)
#define ORVANE_WARNING(...) ORVANE_WARNING_IN(::orvane::uncategorized, __VA_ARGS__)
#define ORVANE_NOTICE(...) ORVANE_NOTICE_IN(::orvane::uncategorized, __VA_ARGS__)
#define ORVANE_INFO(...) ORVANE_INFO_IN(::orvane::uncategorized, __VA_ARGS__)
#define ORVANE_DEBUG(...) ORVANE_DEBUG_IN(::orvane::uncategorized, __VA_ARGS__)
#define ORVANE_TRACE(...) ORVANE_TRACE_IN(::orvane::uncategorized, __VA_ARGS__)
/// @}

/// @name At a fixed level, in a category: ORVANE_INFO_IN(category, format, ...)
/// @{
#define ORVANE_FATAL_IN(category, ...) ORVANE_LOG_IN(category, ::orvane::Level::fatal, __VA_ARGS__)
#define ORVANE_SEVERE_IN(category, ...) \
    ORVANE_LOG_IN(category, ::orvane::Level::severe, __VA_ARGS__)
#define ORVANE_ERROR_IN(category, ...) ORVANE_LOG_IN(category, ::orvane::Level::error, __VA_ARGS__)
#define ORVANE_WARNING_IN(category, ...) \
    ORVANE_LOG_IN(category, ::orvane::Level::warning, __VA_ARGS__)
#define ORVANE_NOTICE_IN(category, ...) \
    ORVANE_LOG_IN(category, ::orvane::Level::notice, __VA_ARGS__)
#define ORVANE_INFO_IN(category, ...) ORVANE_LOG_IN(category, ::orvane::Level::info, __VA_ARGS__)
#define ORVANE_DEBUG_IN(category, ...) ORVANE_LOG_IN(category, ::orvane::Level::debug, __VA_ARGS__)
#define ORVANE_TRACE_IN(category, ...) ORVANE_LOG_IN(category, ::orvane::Level::trace, __VA_ARGS__)
/// @}

#endif

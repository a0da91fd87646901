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
#include <concepts>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <string_view>
#include <type_traits>
#include <utility>
#include <version>

#include "orvane/log.h"
#include "orvane/logger.hpp"

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

/// Whether each text of a call of this header ends with its place, as in "valve stuck
/// (pump.cpp:42)". Not at first. Any thread, at any time.
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
            tell_failure(error.what(), format.literal);
        } catch (...) {
            tell_failure("a formatter has failed", format.literal);
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
    void tell_failure(std::string_view reason, std::string_view format) noexcept {
        length_ = 0;
        append("(");
        append(reason);
        append(") ");
        append(format);
    }

    void cut(std::size_t bound) noexcept {
        length_ = orvane_utf8_truncate(characters_.data(), length_, bound);
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
        const std::size_t length =
            orvane_utf8_truncate(name.data(), name.size(), ORVANE_LOG_CATEGORY_BOUND);
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
    uncategorized.fatal(format, std::forward<Arguments>(arguments)...);
}
template <typename... Arguments>
void severe(const Format<Arguments...>& format, Arguments&&... arguments) noexcept {
    uncategorized.severe(format, std::forward<Arguments>(arguments)...);
}
template <typename... Arguments>
void error(const Format<Arguments...>& format, Arguments&&... arguments) noexcept {
    uncategorized.error(format, std::forward<Arguments>(arguments)...);
}
template <typename... Arguments>
void warning(const Format<Arguments...>& format, Arguments&&... arguments) noexcept {
    uncategorized.warning(format, std::forward<Arguments>(arguments)...);
}
template <typename... Arguments>
void notice(const Format<Arguments...>& format, Arguments&&... arguments) noexcept {
    uncategorized.notice(format, std::forward<Arguments>(arguments)...);
}
template <typename... Arguments>
void info(const Format<Arguments...>& format, Arguments&&... arguments) noexcept {
    uncategorized.info(format, std::forward<Arguments>(arguments)...);
}
template <typename... Arguments>
void debug(const Format<Arguments...>& format, Arguments&&... arguments) noexcept {
    uncategorized.debug(format, std::forward<Arguments>(arguments)...);
}
template <typename... Arguments>
void trace(const Format<Arguments...>& format, Arguments&&... arguments) noexcept {
    uncategorized.trace(format, std::forward<Arguments>(arguments)...);
}
/// @}

/// Logs a text as it is, without a category.
inline void write(Level level, std::string_view text,
                  SourceLocation place = SourceLocation::current()) noexcept {
    uncategorized.write(level, text, place);
}

}  // namespace ORVANE_NAMESPACE

}  // namespace orvane

/// Logs in a category, if the level is enabled: ORVANE_LOG_IN(category, level, format, ...). The
/// arguments are evaluated only then. Levels above ORVANE_ACTIVE_LEVEL leave no code.
#define ORVANE_LOG_IN(category, level, ...)                                                      \
    do {                                                                                         \
        const ::orvane::Level orvane_level = (level);                                            \
        if (static_cast<DDS_Long>(orvane_level) <= static_cast<DDS_Long>(ORVANE_ACTIVE_LEVEL) && \
            ::orvane::is_enabled(orvane_level)) {                                                \
            (category).log(orvane_level, __VA_ARGS__);                                           \
        }                                                                                        \
    } while (0)

/// @name At a fixed level, without a category (ORVANE_CATEGORY is for C): ORVANE_INFO(format, ...)
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

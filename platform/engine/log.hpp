/// @file log.hpp
/// @brief The engine's own diagnostics.
#pragma once

#include <string_view>

#include "platform/engine/values.hpp"

namespace pexa::engine {

/// What a line of the engine's log is about. The first four are reports, the rest traces.
enum class LogCategory : int {
    fatal,  ///< the process aborts when the sink returns
    error,
    warning,
    info,
    config,     ///< configuration in effect, once per domain
    discovery,  ///< participants and endpoints found and lost
    data,
    trace,  ///< traces without a category of their own
    radmin,
    timing,
    traffic,
    topic,
    tcp,
    plist,
    whc,
    throttle,
    rhc,
    content,
};
inline constexpr int log_category_count = 18;

/// A set of categories.
using LogMask = std::uint32_t;
[[nodiscard]] constexpr LogMask log_bit(LogCategory category) {
    return LogMask{1} << static_cast<unsigned>(category);
}
inline constexpr LogMask log_reports = 0xf;
inline constexpr LogMask log_everything = (LogMask{1} << log_category_count) - 1;

/// Receives one line of the engine's log at a time, without line end.
///
/// Runs on any thread that calls the engine and on the engine's own, several at a time, while the
/// engine may hold locks: it must neither call the engine nor wait for a thread that does, and must
/// not throw. @p text is valid during the call only.
using LogSink = void (*)(void* context, LogCategory category, std::string_view text);

/// Sends the engine's log to @p sink instead of standard error, for the life of the process; meant
/// to be called once, before the first participant. What the engine's configuration directs to a
/// trace file goes to the sink instead.
///
/// @param sink NULL restores the engine's own output; when this returns, the old sink is called
/// no more
void set_log_sink(LogSink sink, void* context) noexcept;

/// Chooses the categories that reach the sink, at any time, for existing and future domains.
///
/// Fatal lines always pass. Traces of a domain follow the mask from the first topic that this
/// process creates in it; earlier ones, and those about the configuration, are only to be had by
/// the engine's configuration (`Tracing/Category`). Categories that the configuration enables are
/// passed on only when they are in the mask.
void set_log_mask(LogMask mask) noexcept;
[[nodiscard]] LogMask log_mask() noexcept;

}  // namespace pexa::engine

/// @file log.hpp
/// @brief The engine's own diagnostics.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/engine/values.hpp"

namespace pexa::engine {

/// The subject of a line of the engine's log. The first four are reports, the others are traces.
enum class LogCategory : int {
    fatal,  ///< the process aborts when the sink returns
    error,  ///< also that another participant is refused
    warning,
    info,
    configuration,  ///< the configuration in effect
    discovery,      ///< participants and endpoints found and lost
    topics,         ///< topics and their types
    traffic,        ///< packets and samples sent and received
    storage,        ///< the samples that writers and readers keep, their contents, parameter lists
    internals,      ///< all other traces
};
inline constexpr int log_category_count = 10;

/// A set of categories.
using LogMask = std::uint32_t;
constexpr LogMask log_bit(LogCategory category) {
    return LogMask{1} << static_cast<unsigned>(category);
}
inline constexpr LogMask log_everything = (LogMask{1} << log_category_count) - 1;

/// Receives one line of the engine's log at a time, without line end.
///
/// Runs on any thread that calls the engine and on the engine's own, several at a time. The engine
/// may hold locks meanwhile, so the sink must neither call the engine nor wait for a thread that
/// does. It must not throw. @p text is valid during the call only.
using LogSink = void (*)(void* context, LogCategory category, std::string_view text);

/// Sends the engine's log to @p sink instead of the engine's own output, for the life of the
/// process. To be called before the first participant is created.
///
/// @param sink NULL restores the engine's own output. The old sink is not called after the return.
void set_log_sink(LogSink sink, void* context) noexcept;

/// Chooses the categories that reach the sink, at any time, for existing and future domains.
///
/// Fatal lines always pass, and also go to standard error. Traces of a domain start with the first
/// topic that this process creates in it. Earlier traces pass only if the engine's configuration
/// enables them, too.
void set_log_mask(LogMask mask) noexcept;

/// While it lives, it keeps the errors that the engine reports on the thread that made it, and that
/// the mask keeps from the sink. There is one on a thread at most.
class HiddenErrors {
public:
    HiddenErrors() noexcept;
    ~HiddenErrors();
    HiddenErrors(const HiddenErrors&) = delete;
    HiddenErrors& operator=(const HiddenErrors&) = delete;

    const std::vector<std::string>& lines() const { return lines_; }

    /// Keeps a line if the calling thread has such an object, and memory.
    static void note(std::string_view line) noexcept;

private:
    std::vector<std::string> lines_;
};

}  // namespace pexa::engine

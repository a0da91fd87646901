/// @file logger_target.hpp
/// @brief The loggers that a command is for.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "tools/records/logger_state.hpp"

namespace orvane::tools {

/// "HOST:APP" in hexadecimal means that application; any other text is a shell pattern, fnmatch(3),
/// for the kinds of applications.
class LoggerTarget {
public:
    LoggerTarget() = default;
    /// @return nothing for the empty text
    static std::optional<LoggerTarget> parse(std::string_view text);

    /// @return whether the logger is one of the target and executes commands, now or soon
    bool matches(const LoggerState& logger) const;

    /// The application, unless the target is a pattern.
    const std::optional<Application>& application() const { return application_; }

private:
    std::optional<Application> application_;
    std::string kinds_;
};

}  // namespace orvane::tools

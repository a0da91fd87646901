/// @file logger_target.hpp
/// @brief Whom a command is for.
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

    /// Whether a logger is meant that can execute commands, or soon will.
    [[nodiscard]] bool matches(const LoggerState& logger) const;

    /// The one application that is meant, if only one can be.
    [[nodiscard]] const std::optional<Application>& application() const { return application_; }

private:
    std::optional<Application> application_;
    std::string kinds_;
};

}  // namespace orvane::tools

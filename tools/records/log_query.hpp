/// @file log_query.hpp
/// @brief The log messages that a user asks for.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/records/event.hpp"
#include "tools/records/logger_target.hpp"

namespace orvane::tools {

/// Every condition that is set must hold.
struct LogQuery {
    std::optional<std::int32_t> level;    ///< this level and more severe ones
    std::optional<std::string> category;  ///< shell pattern, fnmatch(3)
    std::string contains;                 ///< text within the message
    std::vector<LoggerTarget> loggers;    ///< of one of these; all when there is none
    std::vector<LoggerTarget> excluded;   ///< and of none of these

    bool matches(const MessageEvent& event) const;
    /// @return whether messages of this logger are asked for
    bool matches(const Logger& logger) const;
};

}  // namespace orvane::tools

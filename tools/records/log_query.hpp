/// @file log_query.hpp
/// @brief The log messages that a user asks for.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tools/records/log_record.hpp"

namespace orvane::tools {

/// Every condition that is set must hold.
struct LogQuery {
    std::optional<std::int32_t> level;       ///< this level and more severe ones
    std::optional<std::string> category;     ///< shell pattern, fnmatch(3)
    std::optional<Application> application;  ///< this one only
    std::string contains;                    ///< text within the message

    bool matches(const LogRecord& record) const;
};

}  // namespace orvane::tools

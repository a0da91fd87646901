/// @file log_query.hpp
/// @brief Which log messages a user asked for.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "tools/records/log_record.hpp"

namespace orvane::tools {

/// A level's number from its name (any case) or decimal digits.
/// @return nothing for any other text
std::optional<std::int32_t> parse_level(std::string_view text);

/// @return "FATAL" … "TRACE", or an empty text for a number that has no name.
std::string_view level_name(std::int32_t level);

/// The name, or the digits of a number that has none.
std::string level_text(std::int32_t level);

/// All names, for messages to the user: "FATAL, SEVERE, …".
std::string level_names();

/// Reads "HOST:APP", both hexadecimal as @ref format_application prints them.
std::optional<Application> parse_application(std::string_view text);
std::string format_application(const Application& application);

/// Every condition that is set must hold.
struct LogQuery {
    std::optional<std::int32_t> level;       ///< this level and more severe ones
    std::optional<std::string> category;     ///< shell pattern, fnmatch(3)
    std::optional<Application> application;  ///< this one only
    std::string contains;                    ///< text within the message

    bool matches(const LogRecord& record) const;
};

}  // namespace orvane::tools

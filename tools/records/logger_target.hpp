/// @file logger_target.hpp
/// @brief The loggers that a user means.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tools/records/logger.hpp"

namespace orvane::tools {

/// One application, or the loggers that meet every condition that is set.
struct LoggerTarget {
    std::string text;  ///< as the user wrote it
    /// This one, whatever else is set. With an instance id of 0 all that share its HOST:APP.
    std::optional<Application> application;
    std::string kinds;                    ///< shell pattern, fnmatch(3)
    std::optional<std::uint32_t> number;  ///< among the loggers of a kind
    std::optional<std::string> hosts;     ///< shell pattern for the names of hosts

    /// A kind may hold the characters that divide a target. Therefore a logger also matches whose
    /// kind matches the whole text.
    bool matches(const Logger& logger) const;
};

}  // namespace orvane::tools

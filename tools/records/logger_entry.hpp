/// @file logger_entry.hpp
/// @brief A logger in a list.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "tools/records/event.hpp"
#include "tools/records/logger.hpp"
#include "tools/records/logger_state.hpp"
#include "tools/records/logger_statistics.hpp"

namespace orvane::tools {

/// What a logger does with messages.
struct LoggerTraffic {
    LoggerStatistics last;
    std::optional<double> rate;  ///< messages that were logged in a second
};

struct LoggerEntry {
    LoggerState state;
    Logger logger;
    std::string addresses;                   ///< of its network interfaces, empty when not known
    std::optional<LoggerTraffic> traffic{};  ///< of a logger with statistics
    bool shares_id = false;                  ///< another logger that is alive has its HOST:APP
    std::shared_ptr<const Publisher> publisher{};  ///< of its State; NULL: the logger itself
};

}  // namespace orvane::tools

/// @file logger_entry.hpp
/// @brief A logger in a list.
#pragma once

#include <string>

#include "tools/records/logger.hpp"
#include "tools/records/logger_state.hpp"

namespace orvane::tools {

struct LoggerEntry {
    LoggerState state;
    Logger logger;
    std::string addresses;  ///< of its network interfaces, empty when not known
};

}  // namespace orvane::tools

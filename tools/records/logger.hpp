/// @file logger.hpp
/// @brief Who logs.
#pragma once

#include <cstdint>
#include <string>

#include "tools/records/application.hpp"

namespace orvane::tools {

/// What is known of a logger. An empty text and a process id of 0 are not known.
struct Logger {
    Application application;
    std::string kind;          ///< the application kind
    std::uint32_t number = 1;  ///< tells loggers of one kind and one viewer apart, from 1 on
    std::string host;          ///< its name
    std::string process;       ///< the name of the program
    std::int64_t process_id = 0;

    friend bool operator==(const Logger&, const Logger&) = default;
};

}  // namespace orvane::tools

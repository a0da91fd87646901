/// @file log_record.hpp
/// @brief A log message.
#pragma once

#include <cstdint>
#include <string>

#include "tools/records/application.hpp"

namespace orvane::tools {

struct LogRecord {
    std::int64_t nanoseconds = 0;  ///< when it was logged, since 1970-01-01 UTC
    Application application;
    std::int32_t level = 0;
    std::string category;
    std::string message;
};

}  // namespace orvane::tools

/// @file log_record.hpp
/// @brief One log message as it came from the domain.
#pragma once

#include <cstdint>
#include <string>

namespace orvane::tools {

/// Identifies a logging application on its domain.
struct Application {
    std::uint32_t host_id = 0;
    std::uint32_t app_id = 0;

    // The check takes the zero that a defaulted comparison is compared with for a pointer.
    // NOLINTNEXTLINE(modernize-use-nullptr)
    friend auto operator<=>(const Application&, const Application&) = default;
};

struct LogRecord {
    std::int64_t nanoseconds = 0;  ///< when it was logged, since 1970-01-01 UTC
    Application application;
    std::int32_t level = 0;
    std::string category;
    std::string message;
};

}  // namespace orvane::tools

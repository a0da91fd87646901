/// @file severity.hpp
/// @brief Levels in the scales of other systems of logs.
#pragma once

#include <cstdint>

namespace orvane::tools {

/// A level between two named ones has the severity of the less severe one.
struct Severity {
    int otlp;    ///< severity number of OpenTelemetry, 1 to 24; the higher the more severe
    int syslog;  ///< priority of syslog, 0 to 7; the lower the more severe
};

Severity severity_of(std::int32_t level);

}  // namespace orvane::tools

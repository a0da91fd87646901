/// @file export_record.hpp
/// @brief What leaves the domain for another system of logs.
#pragma once

#include <cstdint>

#include "tools/records/recorded_event.hpp"

namespace orvane::tools {

struct ExportRecord {
    RecordedEvent event;
    std::int64_t observed = 0;  ///< when it reached this process, since 1970-01-01 UTC
};

}  // namespace orvane::tools

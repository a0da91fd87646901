/// @file record.hpp
/// @brief `orvane record`: keeps what is seen of a domain in files.
#pragma once

#include <cstdint>
#include <optional>

#include "tools/recording/recording_files.hpp"
#include "tools/records/domain_options.hpp"
#include "tools/records/log_query.hpp"

namespace orvane::tools {

struct RecordOptions {
    DomainOptions domain;
    RecordingOptions recording;
    LogQuery query;
    std::optional<double> seconds;  ///< end after so long
};

/// Records until its time is over, SIGINT or SIGTERM. @return the process's exit status
int record(const RecordOptions& options);

}  // namespace orvane::tools

/// @file set.hpp
/// @brief `orvane set-level`, `set-verbosity` and `set-format`: change settings of running loggers.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/records/command.hpp"
#include "tools/records/domain_options.hpp"
#include "tools/records/logger_target.hpp"

namespace orvane::tools {

struct SetOptions {
    DomainOptions domain;
    double timeout_seconds = 5;
    LoggerTarget target;
    std::vector<std::string> words;  ///< behind the target, as they were written
    Command command;
};

/// Sends the command to the loggers of the target and prints the outcomes.
/// @return the process's exit status
int set(const SetOptions& options);

}  // namespace orvane::tools

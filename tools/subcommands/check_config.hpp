/// @file check_config.hpp
/// @brief `orvane check-config`: says what is wrong with a configuration file, and what it means.
#pragma once

#include <string>

namespace orvane::tools {

struct CheckConfigOptions {
    std::string file_name;
    bool strict = false;
};

/// @return the process's exit status
int check_config(const CheckConfigOptions& options);

}  // namespace orvane::tools

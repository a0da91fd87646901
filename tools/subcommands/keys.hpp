/// @file keys.hpp
/// @brief `orvane keys`: makes, shows, checks, renews and revokes credentials for DDS Security.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/security/wanted_rights.hpp"

namespace orvane::tools {

/// The subcommands share a record, because a command line has only one of them.
struct KeysOptions {
    std::string directory;
    std::string name;
    std::vector<std::int32_t> domains;  ///< none stands for all
    std::int64_t days = 365;
    WantedRights rights;           ///< without domains and document
    std::string permissions_file;  ///< whose rules are added; empty for none
    std::string output;            ///< the file for a profile; empty for the standard output
    /// The function below that does what was asked for.
    int (*action)(const KeysOptions& options) = nullptr;
};

/// @name Each returns the process's exit status.
/// @{
int init_keys(const KeysOptions& options);
int issue_keys(const KeysOptions& options);
int list_keys(const KeysOptions& options);
int check_keys(const KeysOptions& options);
int revoke_keys(const KeysOptions& options);
int renew_keys(const KeysOptions& options);
int print_keys_profile(const KeysOptions& options);
/// @}

}  // namespace orvane::tools

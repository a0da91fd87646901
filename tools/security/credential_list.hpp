/// @file credential_list.hpp
/// @brief The credentials that an authority's directory has.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/records/result.hpp"

namespace orvane::tools {

/// What can be said of credentials at a glance.
struct CredentialEntry {
    std::string name;
    std::string role;
    std::string domains;
    std::string serial;
    std::int64_t valid_until = 0;  ///< seconds since 1970-01-01 UTC
    bool is_revoked = false;
    std::string problem;  ///< empty when the folder could be read
};

/// The names of the folders with credentials, sorted.
Result<std::vector<std::string>> credential_names(const std::string& directory, std::string& error);

/// All credentials of a directory, by name.
Result<std::vector<CredentialEntry>> list_credentials(const std::string& directory,
                                                      std::string& error);

}  // namespace orvane::tools

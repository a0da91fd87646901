/// @file credential_list.hpp
/// @brief The credentials that an authority's directory has.
#pragma once

#include <string>
#include <vector>

#include "tools/records/result.hpp"
#include "tools/security/certificates.hpp"

namespace orvane::tools {

/// What can be said of credentials at a glance.
struct CredentialEntry {
    std::string name;
    std::string role;
    std::string domains;
    std::string serial;
    std::string host_and_app;  ///< what HOST:APP of its loggers begins with
    Validity validity;
    bool is_revoked = false;
    bool is_elsewhere = false;  ///< issued, and its folder is not in the directory
    std::string problem;        ///< why the folder is no use; empty when it is
};

/// The names of the folders with credentials, sorted.
Result<std::vector<std::string>> credential_names(const std::string& directory, std::string& error);

/// The authority, all credentials of a directory, and those that it has issued whose folder is not
/// there. What expires first stands first.
Result<std::vector<CredentialEntry>> list_credentials(const std::string& directory,
                                                      std::string& error);

}  // namespace orvane::tools

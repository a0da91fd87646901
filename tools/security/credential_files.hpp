/// @file credential_files.hpp
/// @brief The files of credentials as objects. Each gives nothing when the file cannot be read or
/// holds no such object; the error is "PATH: …".
#pragma once

#include <string>

#include "tools/records/result.hpp"
#include "tools/security/certificates.hpp"

namespace orvane::tools {

std::string join(const std::string& folder, const std::string& name);

Result<Certificate> load_certificate(const std::string& path, std::string& error);

Result<Key> load_key(const std::string& path, std::string& error);

/// @name Signed by @p authority, or nothing.
/// @{
Result<RevocationList> load_revocation_list(const std::string& path, X509& authority,
                                            std::string& error);
/// @return the text that was signed
Result<std::string> load_signed_document(const std::string& path, X509& authority,
                                         std::string& error);
/// @}

}  // namespace orvane::tools

/// @file credentials.hpp
/// @brief The folder with the credentials of an application or a person, and what the engine is
/// told of it.
#pragma once

#include <string>
#include <vector>

#include "tools/records/result.hpp"
#include "tools/security/openssl_handles.hpp"
#include "tools/security/permissions.hpp"

namespace orvane::tools {

/// @name The files of a folder. It needs nothing else, so that it can be copied to any machine.
/// @{
/// The certificate of who signs certificates and the list of revoked ones.
inline constexpr const char* authority_file = "authority.pem";
/// The certificate of who signs governance and permissions.
inline constexpr const char* permissions_authority_file = "permissions_authority.pem";
inline constexpr const char* certificate_file = "certificate.pem";  ///< who this is
inline constexpr const char* key_file = "key.pem";                  ///< its private key
inline constexpr const char* governance_file = "governance.p7s";    ///< how domains are protected
inline constexpr const char* permissions_file = "permissions.p7s";  ///< what it may do
inline constexpr const char* revoked_file = "revoked.pem";          ///< whom nobody trusts any more
/// @}

/// The folder of the authority, beside the others.
inline constexpr const char* authority_folder = "authority";
inline constexpr const char* make_authority_anew =
    "make a new authority with 'orvane keys init' in another directory, and issue all credentials "
    "anew";
inline constexpr const char* expected_authority =
    ", expected a directory for which 'orvane keys init' has made an authority";

/// A property of a participant's QoS.
struct SecurityProperty {
    std::string name;
    std::string value;
};

/// The properties with which a participant uses the credentials of a folder.
std::vector<SecurityProperty> security_properties(const std::string& folder);

/// A file with a QoS profile, the default one, that has these properties.
std::string security_profile(const std::string& folder);

/// The permissions of a folder. Their signature is checked, their dates are not.
/// @param error the file and what is wrong with it
Result<Permissions> read_permissions(const std::string& folder, std::string& error);
/// The same by another authority of permissions than that which the folder has.
Result<Permissions> read_permissions(const std::string& folder, X509& authority,
                                     std::string& error);

/// Whether a folder may be called so: letters, digits, `_`, `.` and `-`, up to 64, neither `.` nor
/// `-` in front, and not "authority".
bool is_credential_name(const std::string& name);
inline constexpr const char* credential_name_form =
    "up to 64 letters, digits, '_', '.' and '-', neither '.' nor '-' in front, and not "
    "'authority',";

}  // namespace orvane::tools

/// @file authority.hpp
/// @brief The authority of a plant: who makes credentials, and revokes them.
///
/// Its directory has the folder `authority`, which nobody else needs and nobody else may see, and
/// beside it a folder with the credentials of each application and person.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/records/result.hpp"
#include "tools/security/certificates.hpp"
#include "tools/security/issued_credentials.hpp"
#include "tools/security/permissions.hpp"
#include "tools/security/whole_file.hpp"

namespace orvane::tools {

/// What new credentials are for.
struct CredentialRequest {
    std::string name;
    std::string grant_name;             ///< the role, or "own"
    std::vector<PermissionRule> rules;  ///< what it may do
    std::int64_t days = 365;
};

/// Who has been told of a revocation.
struct Revocation {
    std::vector<std::string> names;     ///< of the folders that have the new list
    std::vector<std::string> failures;  ///< why others have not, "PATH: …"
};

/// Operations that fail say why: "PATH: …". They may run at the same time in several processes, and
/// be repeated when they have been interrupted. @p now is in seconds since 1970-01-01 UTC.
class Authority {
public:
    /// Makes a directory, or an authority in one that is there.
    static Status create(const std::string& directory, const std::vector<DomainRange>& domains,
                         std::int64_t now, std::string& error);

    /// Opens it for changes; other processes wait until the object is destroyed.
    static Result<Authority> open(const std::string& directory, std::string& error);

    /// Makes a folder with a new key.
    Status issue(const CredentialRequest& request, std::int64_t now, std::string& error) const;

    /// Gives a folder a new certificate and permissions for the same key, subject and rights.
    Status renew(const std::string& name, std::int64_t days, std::int64_t now,
                 std::string& error) const;

    /// Revokes all certificates of a name, and tells all folders of the directory. What is revoked
    /// in one of these stays so, if the authority has come back from an older copy.
    /// @return nothing when the authority's own list has not changed
    Result<Revocation> revoke(const std::string& name, std::int64_t now, std::string& error) const;

private:
    Authority(const std::string& directory, FolderLock lock, Signer identity_authority,
              Signer permissions_authority);

    Result<Validity> validity_for(std::int64_t days, std::int64_t now, std::string& error) const;
    /// Fails when the rules allow nothing in the authority's domains.
    Status check_domains(const std::vector<PermissionRule>& rules, std::string& error) const;
    /// Fails when permissions are still valid that the name had before, and that differ: they are
    /// about a subject, and not about one of its certificates.
    Status check_earlier_rights(const CredentialRequest& request, std::int64_t now,
                                std::string& error) const;
    /// What was last issued for a key. Fails when it was for another name, or has been revoked.
    Result<Permissions> issued_rights(const std::string& name, EVP_PKEY& key,
                                      std::string& error) const;
    /// Those of a name, and all that have been revoked in the folders.
    Result<std::vector<std::string>> serials_to_revoke(const std::string& name,
                                                       const std::vector<std::string>& names,
                                                       std::string& error) const;
    std::string sign(const Permissions& permissions) const;
    /// Writes all but the key.
    Status fill_folder(const std::string& folder, X509& certificate, const std::string& permissions,
                       std::string& error) const;

    std::string directory_;
    std::string folder_;  ///< of the authority itself
    IssuedCredentials issued_;
    FolderLock lock_;
    Signer identity_authority_;
    Signer permissions_authority_;
};

}  // namespace orvane::tools

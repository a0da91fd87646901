#include "tools/security/credential_list.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "tools/security/credential_files.hpp"
#include "tools/security/credentials.hpp"
#include "tools/security/issued_credentials.hpp"

namespace orvane::tools {
namespace {

namespace fs = std::filesystem;

/// What makes an authority.
struct AuthorityFiles {
    Certificate identities;
    Certificate permissions;
    RevocationList revoked;
};

Result<AuthorityFiles> load_authority(const std::string& folder, std::string& error) {
    Result<Certificate> identities = load_certificate(join(folder, certificate_file), error);
    if (!identities) {
        error += expected_authority;
        return std::nullopt;
    }
    Result<Certificate> permissions =
        load_certificate(join(folder, permissions_authority_file), error);
    if (!permissions) {
        return std::nullopt;
    }
    Result<RevocationList> revoked =
        load_revocation_list(join(folder, revoked_file), **identities, error);
    if (!revoked) {
        return std::nullopt;
    }
    return AuthorityFiles{*std::move(identities), *std::move(permissions), *std::move(revoked)};
}

CredentialEntry entry_of(const std::string& name, X509& certificate,
                         const AuthorityFiles& authority) {
    CredentialEntry entry;
    entry.name = name;
    entry.serial = serial_of(certificate);
    entry.host_and_app = host_and_app_of(certificate);
    entry.validity = validity_of(certificate);
    entry.is_revoked = is_revoked(*authority.revoked, certificate);
    return entry;
}

void add_rights(CredentialEntry& entry, const Result<Permissions>& permissions) {
    if (permissions) {
        entry.role = permissions->name;
        entry.domains = text_of(permissions->domains());
    }
}

CredentialEntry entry_of_folder(const std::string& folder, const std::string& name,
                                const AuthorityFiles& authority) {
    CredentialEntry entry;
    entry.name = name;
    const Result<Certificate> certificate =
        load_certificate(join(folder, certificate_file), entry.problem);
    if (!certificate) {
        return entry;
    }
    entry = entry_of(name, **certificate, authority);
    const std::string subject = subject_of(**certificate);
    if (!is_signed_by(**certificate, *authority.identities)) {
        entry.problem = "of another authority";
    } else if (subject != "CN=" + name) {
        entry.problem = "is " + subject;
    } else {
        add_rights(entry, read_permissions(folder, *authority.permissions, entry.problem));
    }
    return entry;
}

/// Adds what was issued last for each name that has no folder.
Status add_issued(const IssuedCredentials& issued, const std::vector<std::string>& names_of_folders,
                  const AuthorityFiles& authority, std::vector<CredentialEntry>& entries,
                  std::string& error) {
    const Result<std::vector<std::string>> names = issued.names(error);
    if (!names) {
        return Status::failed;
    }
    for (const std::string& name : *names) {
        if (std::binary_search(names_of_folders.begin(), names_of_folders.end(), name)) {
            continue;
        }
        const Result<std::vector<Certificate>> certificates = issued.certificates(name, error);
        if (!certificates) {
            return Status::failed;
        }
        X509& latest = latest_of(*certificates);
        CredentialEntry entry = entry_of(name, latest, authority);
        add_rights(entry,
                   issued.permissions_with(latest, name, *authority.permissions, entry.problem));
        entry.is_elsewhere = true;
        entries.push_back(entry);
    }
    return Status::ok;
}

}  // namespace

Result<std::vector<std::string>> credential_names(const std::string& directory,
                                                  std::string& error) {
    std::vector<std::string> names;
    std::error_code failure;
    for (fs::directory_iterator each{directory, failure}, end; !failure && each != end;
         each.increment(failure)) {
        const std::string name = each->path().filename().string();
        std::error_code unknown;
        if (is_credential_name(name) && fs::exists(each->path() / certificate_file, unknown)) {
            names.push_back(name);
        }
    }
    if (failure) {
        error = fmt::format("{}: cannot read: {}", directory, failure.message());
        return std::nullopt;
    }
    std::sort(names.begin(), names.end());
    return names;
}

Result<std::vector<CredentialEntry>> list_credentials(const std::string& directory,
                                                      std::string& error) {
    const std::string folder = join(directory, authority_folder);
    const Result<AuthorityFiles> authority = load_authority(folder, error);
    if (!authority) {
        return std::nullopt;
    }
    const Result<std::vector<std::string>> names = credential_names(directory, error);
    if (!names) {
        return std::nullopt;
    }
    std::vector<CredentialEntry> entries{
        entry_of(authority_folder, *authority->identities, *authority)};
    for (const std::string& name : *names) {
        entries.push_back(entry_of_folder(join(directory, name), name, *authority));
    }
    if (add_issued(IssuedCredentials{join(folder, issued_folder)}, *names, *authority, entries,
                   error) == Status::failed) {
        return std::nullopt;
    }
    std::stable_sort(entries.begin(), entries.end(),
                     [](const CredentialEntry& left, const CredentialEntry& right) {
                         return left.validity.to < right.validity.to;
                     });
    return entries;
}

}  // namespace orvane::tools

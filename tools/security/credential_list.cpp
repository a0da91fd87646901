#include "tools/security/credential_list.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "tools/security/credential_files.hpp"
#include "tools/security/credentials.hpp"

namespace orvane::tools {
namespace {

namespace fs = std::filesystem;

CredentialEntry entry_of(const std::string& directory, const std::string& name,
                         X509_CRL& revocation_list) {
    CredentialEntry entry;
    entry.name = name;
    const std::string folder = join(directory, name);
    const Result<Certificate> certificate =
        load_certificate(join(folder, certificate_file), entry.problem);
    if (!certificate) {
        return entry;
    }
    entry.serial = serial_of(**certificate);
    entry.valid_until = validity_of(**certificate).to;
    entry.is_revoked = is_revoked(revocation_list, **certificate);
    if (const Result<Permissions> permissions = read_permissions(folder, entry.problem)) {
        entry.role = permissions->name;
        entry.domains = text_of(permissions->domains());
    }
    return entry;
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
    const Result<Certificate> authority = load_certificate(join(folder, certificate_file), error);
    if (!authority) {
        error += expected_authority;
        return std::nullopt;
    }
    const Result<RevocationList> list =
        load_revocation_list(join(folder, revoked_file), **authority, error);
    if (!list) {
        return std::nullopt;
    }
    const Result<std::vector<std::string>> names = credential_names(directory, error);
    if (!names) {
        return std::nullopt;
    }
    std::vector<CredentialEntry> entries;
    for (const std::string& name : *names) {
        entries.push_back(entry_of(directory, name, **list));
    }
    return entries;
}

}  // namespace orvane::tools

#include "tools/security/authority.hpp"

#include <fmt/format.h>

#include <string_view>
#include <utility>

#include "tools/security/credential_files.hpp"
#include "tools/security/credential_list.hpp"
#include "tools/security/credentials.hpp"
#include "tools/security/governance.hpp"
#include "tools/security/permissions_document.hpp"
#include "tools/security/signed_document.hpp"
#include "tools/security/utc_text.hpp"

namespace orvane::tools {
namespace {

constexpr std::int64_t day = 86400;
/// @name What a clock may say: the years 2020 to 2199.
/// @{
constexpr std::int64_t earliest = 1'577'836'800;
constexpr std::int64_t latest = 7'258'118'399;
/// @}
constexpr std::int64_t authority_days = 20 * 365 + 5;
constexpr const char* permissions_key_file = "permissions_key.pem";

struct NewFile {
    const char* name;
    std::string bytes;
};

Status write_files(const std::string& folder, const std::vector<NewFile>& files,
                   std::string& error) {
    for (const NewFile& file : files) {
        if (write_whole_file(join(folder, file.name), file.bytes, public_mode, error) ==
            Status::failed) {
            return Status::failed;
        }
    }
    return Status::ok;
}

Status write_key(const std::string& path, EVP_PKEY& key, std::string& error) {
    return write_whole_file(path, content_of(*to_pem(key)), private_mode, error);
}

Result<Signer> load_signer(const std::string& folder, const char* certificate_name,
                           const char* key_name, std::string& error) {
    Result<Certificate> certificate = load_certificate(join(folder, certificate_name), error);
    if (!certificate) {
        return std::nullopt;
    }
    Result<Key> key = load_key(join(folder, key_name), error);
    if (!key) {
        return std::nullopt;
    }
    if (!is_for(**certificate, **key)) {
        error = fmt::format("{}: not the key of {}", join(folder, key_name), certificate_name);
        return std::nullopt;
    }
    return Signer{*std::move(key), *std::move(certificate)};
}

}  // namespace

Status Authority::create(const std::string& directory, const std::vector<DomainRange>& domains,
                         std::int64_t now, std::string& error) {
    if (now < earliest || now > latest) {
        error = fmt::format("it is {}: set the clock of this machine", utc_text(now));
        return Status::failed;
    }
    if (create_private_folder(directory, error) == Status::failed) {
        return Status::failed;
    }
    const Result<FolderLock> lock = FolderLock::take(directory, error);
    if (!lock) {
        return Status::failed;
    }
    remove_leftovers(directory, [](const std::string& name) { return name == authority_folder; });
    Result<NewFolder> folder = NewFolder::create(join(directory, authority_folder), error);
    if (!folder) {
        return Status::failed;
    }
    const Validity validity = validity_in_days(authority_days, now);
    const Signer identities = make_identity_authority(validity);
    const Signer permissions = make_permissions_authority(validity);
    const std::string list = to_pem(*make_revocation_list(identities, validity));
    const std::string governance = sign_document(governance_xml(domains), permissions);
    if (write_key(join(folder->path(), key_file), *identities.key, error) == Status::failed ||
        write_key(join(folder->path(), permissions_key_file), *permissions.key, error) ==
            Status::failed ||
        write_files(folder->path(),
                    {{certificate_file, to_pem(*identities.certificate)},
                     {permissions_authority_file, to_pem(*permissions.certificate)},
                     {revoked_file, list},
                     {governance_file, governance}},
                    error) == Status::failed ||
        create_private_folder(join(folder->path(), issued_folder), error) == Status::failed) {
        return Status::failed;
    }
    return folder->finish(error);
}

Result<Authority> Authority::open(const std::string& directory, std::string& error) {
    const std::string folder = join(directory, authority_folder);
    Result<FolderLock> lock = FolderLock::take(folder, error);
    if (!lock) {
        error += expected_authority;
        return std::nullopt;
    }
    // The authority's own may be that of a process that makes one just now, which fails.
    remove_leftovers(directory, is_credential_name);
    const auto all = [](const std::string&) { return true; };
    remove_leftovers(folder, all);
    remove_leftovers(join(folder, issued_folder), all);
    for (const std::string& name :
         credential_names(directory, error).value_or(std::vector<std::string>{})) {
        remove_leftovers(join(directory, name), all);
    }
    Result<Signer> identities = load_signer(folder, certificate_file, key_file, error);
    if (!identities) {
        return std::nullopt;
    }
    Result<Signer> permissions =
        load_signer(folder, permissions_authority_file, permissions_key_file, error);
    if (!permissions) {
        return std::nullopt;
    }
    return Authority{directory, *std::move(lock), *std::move(identities), *std::move(permissions)};
}

Authority::Authority(const std::string& directory, FolderLock lock, Signer identity_authority,
                     Signer permissions_authority)
    : directory_(directory),
      folder_(join(directory, authority_folder)),
      issued_(join(folder_, issued_folder)),
      lock_(std::move(lock)),
      identity_authority_(std::move(identity_authority)),
      permissions_authority_(std::move(permissions_authority)) {}

Status Authority::issue(const CredentialRequest& request, std::int64_t now,
                        std::string& error) const {
    Result<NewFolder> folder = NewFolder::create(join(directory_, request.name), error);
    if (!folder) {
        return Status::failed;
    }
    const Result<Validity> validity = validity_for(request.days, now, error);
    if (!validity || check_domains(request.rules, error) == Status::failed ||
        check_earlier_rights(request, now, error) == Status::failed) {
        return Status::failed;
    }
    const Key key = make_key();
    const Certificate certificate =
        make_certificate(request.name, *key, *validity, identity_authority_);
    const std::string permissions = sign({request.grant_name, subject_of(*certificate),
                                          validity->from, validity->to, request.rules, false});
    if (write_key(join(folder->path(), key_file), *key, error) == Status::failed ||
        fill_folder(folder->path(), *certificate, permissions, error) == Status::failed ||
        issued_.keep(request.name, *certificate, permissions, error) == Status::failed) {
        return Status::failed;
    }
    return folder->finish(error);
}

Status Authority::renew(const std::string& name, std::int64_t days, std::int64_t now,
                        std::string& error) const {
    const std::string folder = join(directory_, name);
    const Result<Validity> validity = validity_for(days, now, error);
    if (!validity) {
        return Status::failed;
    }
    const Result<Key> key = load_key(join(folder, key_file), error);
    if (!key) {
        return Status::failed;
    }
    Result<Permissions> permissions = issued_rights(name, **key, error);
    if (!permissions) {
        return Status::failed;
    }
    const Certificate certificate = make_certificate(name, **key, *validity, identity_authority_);
    permissions->not_before = validity->from;
    permissions->not_after = validity->to;
    const std::string document = sign(*permissions);
    if (issued_.keep(name, *certificate, document, error) == Status::failed) {
        return Status::failed;
    }
    return fill_folder(folder, *certificate, document, error);
}

Result<Revocation> Authority::revoke(const std::string& name, std::int64_t now,
                                     std::string& error) const {
    const std::string own_list = join(folder_, revoked_file);
    const Result<RevocationList> list =
        load_revocation_list(own_list, *identity_authority_.certificate, error);
    if (!list) {
        return std::nullopt;
    }
    const Result<std::vector<std::string>> names = credential_names(directory_, error);
    if (!names) {
        return std::nullopt;
    }
    const Result<std::vector<std::string>> serials = serials_to_revoke(name, *names, error);
    if (!serials) {
        return std::nullopt;
    }
    revoke_serials(**list, *serials, now, identity_authority_);
    const std::string pem = to_pem(**list);
    if (write_whole_file(own_list, pem, public_mode, error) == Status::failed) {
        return std::nullopt;
    }
    Revocation revocation;
    for (const std::string& each : *names) {
        std::string failure;
        const std::string folder = join(directory_, each);
        const Result<Certificate> authority =
            load_certificate(join(folder, authority_file), failure);
        if (authority && X509_cmp(authority->get(), identity_authority_.certificate.get()) != 0) {
            continue;
        }
        if (write_whole_file(join(folder, revoked_file), pem, public_mode, failure) ==
            Status::failed) {
            revocation.failures.push_back(failure);
        } else {
            revocation.names.push_back(each);
        }
    }
    return revocation;
}

Result<std::vector<std::string>> Authority::serials_to_revoke(const std::string& name,
                                                              const std::vector<std::string>& names,
                                                              std::string& error) const {
    X509& authority = *identity_authority_.certificate;
    Result<std::vector<std::string>> serials = issued_.serials(name, error);
    if (!serials) {
        return std::nullopt;
    }
    std::string unknown;
    const Result<Certificate> present =
        load_certificate(join(join(directory_, name), certificate_file), unknown);
    if (present && is_signed_by(**present, authority) && subject_of(**present) == "CN=" + name) {
        serials->push_back(serial_of(**present));
    }
    if (serials->empty()) {
        error = fmt::format("{}: the authority has issued nothing for '{}'", folder_, name);
        return std::nullopt;
    }
    for (const std::string& each : names) {
        const Result<RevocationList> list =
            load_revocation_list(join(join(directory_, each), revoked_file), authority, unknown);
        if (list) {
            const std::vector<std::string> more = serials_in(**list);
            serials->insert(serials->end(), more.begin(), more.end());
        }
    }
    return serials;
}

Result<Validity> Authority::validity_for(std::int64_t days, std::int64_t now,
                                         std::string& error) const {
    const std::string path = join(folder_, certificate_file);
    const Validity own = validity_of(*identity_authority_.certificate);
    const std::int64_t left = (own.to - now) / day;
    if (now < own.from) {
        error = fmt::format("{}: valid from {} on, and it is {}: set the clock of this machine",
                            path, utc_text(own.from), utc_text(now));
        return std::nullopt;
    }
    if (left < 1) {
        error = fmt::format("{}: ends at {}: {}", path, utc_text(own.to), make_authority_anew);
        return std::nullopt;
    }
    if (days < 1 || days > left) {
        error = fmt::format("{} days: expected 1 to {}, because {} ends at {}; then {}", days, left,
                            path, utc_text(own.to), make_authority_anew);
        return std::nullopt;
    }
    return validity_in_days(days, now);
}

Status Authority::check_domains(const std::vector<PermissionRule>& rules,
                                std::string& error) const {
    const std::string path = join(folder_, governance_file);
    const Result<std::string> xml =
        load_signed_document(path, *permissions_authority_.certificate, error);
    if (!xml) {
        return Status::failed;
    }
    const std::vector<DomainRange> governed = governed_domains(*xml);
    Permissions permissions;
    permissions.rules = rules;
    for (std::int32_t domain_id = 0; domain_id <= last_secured_domain; ++domain_id) {
        if (contains(governed, domain_id) && permissions.may_join(domain_id)) {
            return Status::ok;
        }
    }
    if (permissions.domains().empty()) {
        error = "nothing is allowed, expected a rule that allows something";
        return Status::failed;
    }
    error = fmt::format("domains {}: expected one of those of {}: {}",
                        text_of(permissions.domains()), path, text_of(governed));
    return Status::failed;
}

Status Authority::check_earlier_rights(const CredentialRequest& request, std::int64_t now,
                                       std::string& error) const {
    const Result<std::vector<Permissions>> all =
        issued_.permissions(request.name, *permissions_authority_.certificate, error);
    if (!all) {
        return Status::failed;
    }
    for (const Permissions& earlier : *all) {
        if (earlier.not_after > now && earlier.rules != request.rules) {
            error = fmt::format(
                "{}: has had other permissions, which hold until {} and would hold with a new "
                "certificate, too; expected the same rights or another name",
                join(directory_, request.name), utc_text(earlier.not_after));
            return Status::failed;
        }
    }
    return Status::ok;
}

Result<Permissions> Authority::issued_rights(const std::string& name, EVP_PKEY& key,
                                             std::string& error) const {
    const Result<RevocationList> list =
        load_revocation_list(join(folder_, revoked_file), *identity_authority_.certificate, error);
    if (!list) {
        return std::nullopt;
    }
    Result<std::vector<Certificate>> certificates = issued_.certificates(name, error);
    if (!certificates) {
        return std::nullopt;
    }
    std::erase_if(*certificates, [&](const Certificate& each) { return !is_for(*each, key); });
    if (certificates->empty()) {
        error = fmt::format("{}: no key of credentials that this authority has issued for '{}'",
                            join(join(directory_, name), key_file), name);
        return std::nullopt;
    }
    for (const Certificate& certificate : *certificates) {
        if (is_revoked(**list, *certificate)) {
            error = join(directory_, name) +
                    ": revoked, and its key is not used again; remove the folder, and issue it "
                    "anew or under another name";
            return std::nullopt;
        }
    }
    return issued_.permissions_with(latest_of(*certificates), name,
                                    *permissions_authority_.certificate, error);
}

std::string Authority::sign(const Permissions& permissions) const {
    return sign_document(permissions_xml(permissions), permissions_authority_);
}

Status Authority::fill_folder(const std::string& folder, X509& certificate,
                              const std::string& permissions, std::string& error) const {
    const Result<std::string> governance = read_whole_file(join(folder_, governance_file), error);
    if (!governance) {
        return Status::failed;
    }
    const Result<std::string> list = read_whole_file(join(folder_, revoked_file), error);
    if (!list) {
        return Status::failed;
    }
    // In this order renewed credentials work after each step.
    return write_files(folder,
                       {{authority_file, to_pem(*identity_authority_.certificate)},
                        {permissions_authority_file, to_pem(*permissions_authority_.certificate)},
                        {governance_file, *governance},
                        {revoked_file, *list},
                        {permissions_file, permissions},
                        {certificate_file, to_pem(certificate)}},
                       error);
}

}  // namespace orvane::tools

#include "tools/security/credential_check.hpp"

#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <limits>
#include <system_error>
#include <utility>

#include "tools/security/credential_files.hpp"
#include "tools/security/credentials.hpp"
#include "tools/security/governance.hpp"
#include "tools/security/plug_ins.hpp"
#include "tools/security/utc_text.hpp"

namespace orvane::tools {
namespace {

namespace fs = std::filesystem;

constexpr const char* copy_again =
    "copy the folder again from the directory where the authority made it";
constexpr const char* for_owner = "run this as the owner, or give it to this user";
constexpr const char* renew =
    "renew it with 'orvane keys renew' where the authority is, and copy the folder from there";

/// @name Seconds before an end in which something should be done.
/// @{
constexpr std::int64_t notice = std::int64_t{14} * 86400;
constexpr std::int64_t authority_notice = std::int64_t{90} * 86400;
/// @}

class Check {
public:
    Check(const std::string& folder, std::optional<std::int32_t> domain_id, std::int64_t now)
        : folder_(folder), domain_id_(domain_id), now_(now) {}

    std::vector<CredentialFinding> run() {
        check_plug_ins();
        std::error_code failure;
        const fs::file_status status = fs::status(folder_, failure);
        if (!fs::exists(status) && status.type() != fs::file_type::not_found) {
            refuse(fmt::format("{}: cannot read: {}", folder_, failure.message()), for_owner);
            return findings_;
        }
        if (!fs::is_directory(status)) {
            refuse(folder_ + ": no such folder",
                   "name a folder that 'orvane keys issue' has made, such as plant/pump-1");
            return findings_;
        }
        authority_ = load_authority(authority_file);
        permissions_authority_ = load_authority(permissions_authority_file);
        certificate_ = load(certificate_file);
        if (authority_) {
            check_revoked();
        }
        if (permissions_authority_) {
            check_governance();
        }
        if (authority_ && permissions_authority_) {
            check_separation();
        }
        if (certificate_) {
            check_certificate();
            check_key();
        }
        if (permissions_authority_ && certificate_) {
            check_permissions();
        }
        return findings_;
    }

private:
    /// Adds what everybody refuses.
    void refuse(const std::string& cause, const std::string& remedy = copy_again) {
        findings_.push_back({true, cause, remedy});
    }

    void warn(const std::string& cause, const std::string& remedy) {
        findings_.push_back({false, cause, remedy});
    }

    /// Adds why a file could not be loaded.
    void refuse_file(const char* file, const std::string& error) {
        const bool is_for_others = access(path_of(file).c_str(), R_OK) != 0 && errno == EACCES;
        refuse(error, is_for_others ? for_owner : copy_again);
    }

    std::string path_of(const char* file) const { return join(folder_, file); }

    void check_plug_ins() {
        for (const std::string& file : missing_plug_ins()) {
            refuse(file + ": the engine's plug-in is not on this machine",
                   "install Cyclone DDS with its plug-ins for security, which Debian has in the "
                   "package of the library");
        }
    }

    Certificate load(const char* file) {
        std::string error;
        Result<Certificate> certificate = load_certificate(path_of(file), error);
        if (!certificate) {
            refuse_file(file, error);
            return nullptr;
        }
        return *std::move(certificate);
    }

    Certificate load_authority(const char* file) {
        Certificate authority = load(file);
        if (authority) {
            check_dates(path_of(file), validity_of(*authority), make_authority_anew,
                        authority_notice);
        }
        return authority;
    }

    void check_separation() {
        if (is_signed_by(*permissions_authority_, *authority_)) {
            warn(fmt::format("{}: of the authority in {}, so everybody who has one of its "
                             "certificates can make permissions",
                             path_of(permissions_authority_file), authority_file),
                 make_authority_anew);
        }
    }

    /// Warns only of what ends before all of which it has warned: files are often made together.
    void check_dates(const std::string& path, const Validity& validity, const char* remedy,
                     std::int64_t seconds_of_notice = notice) {
        if (now_ < validity.from) {
            refuse(fmt::format("{}: valid from {} on, and it is {}", path, utc_text(validity.from),
                               utc_text(now_)),
                   "set the clock of this machine");
        } else if (now_ >= validity.to) {
            refuse(fmt::format("{}: expired at {}", path, utc_text(validity.to)), remedy);
        } else if (validity.to - now_ <= seconds_of_notice && validity.to < warned_of_) {
            warn(fmt::format("{}: expires at {}", path, utc_text(validity.to)), remedy);
            warned_of_ = validity.to;
        }
    }

    void check_certificate() {
        const std::string path = path_of(certificate_file);
        check_dates(path, validity_of(*certificate_), renew);
        if (authority_ && !is_signed_by(*certificate_, *authority_)) {
            refuse(fmt::format("{}: not issued by the authority in {}", path, authority_file));
        }
        const EVP_PKEY* key = X509_get0_pubkey(certificate_.get());
        if (key == nullptr || !is_supported(*key)) {
            refuse(path + ": the engine knows no such keys, expected P-256 or RSA with 2048 bits",
                   "issue credentials with 'orvane keys issue'");
        }
    }

    void check_key() {
        const std::string path = path_of(key_file);
        std::string error;
        const Result<Key> key = load_key(path, error);
        if (!key) {
            refuse_file(key_file, error);
            return;
        }
        if (!is_for(*certificate_, **key)) {
            // The engine notices this at the other side only.
            refuse(fmt::format("{}: not the key of {}", path, certificate_file));
        }
        struct stat status {};
        constexpr mode_t of_others = S_IRWXG | S_IRWXO;
        if (stat(path.c_str(), &status) == 0 && (status.st_mode & of_others) != 0) {
            warn(fmt::format("{}: others than its owner may use it (mode {:04o}, expected 0600)",
                             path, status.st_mode & 07777U),
                 "chmod 600 " + path);
        }
    }

    /// Whether the domain to join is one of those that a document is about.
    void check_domain(const char* file, const std::vector<DomainRange>& domains,
                      const char* remedy) {
        if (domain_id_ && !contains(domains, *domain_id_)) {
            refuse(fmt::format("{}: nothing is allowed in domain {}, but in {}", path_of(file),
                               *domain_id_, text_of(domains)),
                   *domain_id_ > last_secured_domain
                       ? fmt::format("use one of these domains; the engine secures those up to {}",
                                     last_secured_domain)
                       : remedy);
        }
    }

    void check_governance() {
        std::string error;
        const Result<std::string> xml =
            load_signed_document(path_of(governance_file), *permissions_authority_, error);
        if (!xml) {
            refuse_file(governance_file, error);
            return;
        }
        check_domain(governance_file, governed_domains(*xml),
                     "use one of these domains, or make an authority for this one");
    }

    void check_permissions() {
        std::string error;
        const Result<Permissions> permissions = read_permissions(folder_, error);
        if (!permissions) {
            refuse_file(permissions_file, error);
            return;
        }
        check_dates(path_of(permissions_file), {permissions->not_before, permissions->not_after},
                    renew);
        check_domain(permissions_file, permissions->domains(),
                     "use one of these domains, or issue credentials for this one");
    }

    void check_revoked() {
        const std::string path = path_of(revoked_file);
        std::string error;
        const Result<RevocationList> list = load_revocation_list(path, *authority_, error);
        if (!list) {
            refuse_file(revoked_file, error);
            return;
        }
        check_dates(path, validity_of(**list), copy_again);
        if (certificate_ && is_revoked(**list, *certificate_)) {
            refuse(fmt::format("{}: revoked, as {} says", path_of(certificate_file), revoked_file),
                   "issue credentials with another name");
        }
    }

    std::string folder_;
    std::optional<std::int32_t> domain_id_;
    std::int64_t now_;
    std::int64_t warned_of_ = std::numeric_limits<std::int64_t>::max();  ///< the earliest end
    Certificate authority_;
    Certificate permissions_authority_;
    Certificate certificate_;
    std::vector<CredentialFinding> findings_;
};

}  // namespace

std::vector<CredentialFinding> check_credentials(const std::string& folder,
                                                 std::optional<std::int32_t> domain_id,
                                                 std::int64_t now) {
    return Check(folder, domain_id, now).run();
}

}  // namespace orvane::tools

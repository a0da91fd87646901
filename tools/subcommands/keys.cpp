#include "tools/subcommands/keys.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>

#include "tools/configuration/findings.hpp"
#include "tools/security/authority.hpp"
#include "tools/security/credential_check.hpp"
#include "tools/security/credential_files.hpp"
#include "tools/security/credential_list.hpp"
#include "tools/security/credentials.hpp"
#include "tools/security/utc_text.hpp"
#include "tools/security/whole_file.hpp"
#include "tools/subcommands/exit_status.hpp"
#include "tools/subcommands/session.hpp"
#include "tools/text/cells.hpp"
#include "tools/text/display_text.hpp"

namespace orvane::tools {
namespace {

std::int64_t seconds_now() {
    return std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
}

int print_failure(const std::string& error) {
    print_error("orvane: " + displayable(error));
    return exit_failure;
}

int print(const std::string& text) {
    return write_out(text) == Status::ok ? exit_success : exit_failure;
}

std::string folder_of(const KeysOptions& options) {
    return join(options.directory, options.name);
}

/// The wanted rules, with those of the file.
Result<CredentialRequest> request_of(const KeysOptions& options, std::int64_t now,
                                     std::string& error) {
    WantedRights wanted = options.rights;
    wanted.domains = options.domains;
    if (!options.permissions_file.empty()) {
        Result<std::string> document = read_whole_file(options.permissions_file, error);
        if (!document) {
            return std::nullopt;
        }
        wanted.document = *std::move(document);
    }
    const Validity validity = validity_in_days(options.days, now);
    const Result<std::vector<PermissionRule>> rules =
        rules_of(wanted, options.name, validity, error);
    if (!rules) {
        if (wanted.document) {
            error = fmt::format("{}: {}", options.permissions_file, error);
        }
        return std::nullopt;
    }
    return CredentialRequest{options.name, grant_name_of(wanted), *rules, options.days};
}

/// Which list of revoked certificates a folder has; empty when it has none of its authority.
std::string list_in_words(const std::string& folder) {
    std::string unreadable;
    const Result<Certificate> authority =
        load_certificate(join(folder, authority_file), unreadable);
    if (!authority) {
        return "";
    }
    const Result<RevocationList> list =
        load_revocation_list(join(folder, revoked_file), **authority, unreadable);
    return list ? fmt::format("  list of revoked certificates: number {}\n", number_of(**list))
                : "";
}

std::string state_of(const CredentialEntry& entry, std::int64_t now) {
    if (!entry.problem.empty()) {
        return entry.problem;
    }
    if (entry.is_revoked) {
        return "revoked";
    }
    if (now < entry.validity.from) {
        return "not yet valid";
    }
    return now >= entry.validity.to ? "expired" : "valid";
}

std::string table_of(const std::vector<std::vector<std::string>>& rows) {
    std::vector<std::size_t> widths;
    for (const auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], width_of(row[i]));
        }
    }
    std::string text;
    for (const auto& row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            line += i + 1 == row.size() ? row[i] : padded(row[i], widths[i]) + "  ";
        }
        text += line + '\n';
    }
    return text;
}

}  // namespace

int init_keys(const KeysOptions& options) {
    std::vector<DomainRange> domains;
    for (const std::int32_t domain_id : options.domains) {
        domains.push_back({domain_id, domain_id});
    }
    if (domains.empty()) {
        domains.push_back({});
    }
    std::string error;
    if (Authority::create(options.directory, domains, seconds_now(), error) == Status::failed) {
        return print_failure(error);
    }
    return print(
        fmt::format("{0}/authority is the authority: keep it secret, and keep a copy of it\n"
                    "next: orvane keys issue {0} NAME --role application\n",
                    options.directory));
}

int issue_keys(const KeysOptions& options) {
    std::string error;
    const std::int64_t now = seconds_now();
    const Result<CredentialRequest> request = request_of(options, now, error);
    if (!request) {
        return print_failure(error);
    }
    const Result<Authority> authority = Authority::open(options.directory, error);
    if (!authority || authority->issue(*request, now, error) == Status::failed) {
        return print_failure(error);
    }
    return print(fmt::format("{} has the credentials: copy it to the machine of {}\n",
                             folder_of(options), options.name));
}

int list_keys(const KeysOptions& options) {
    std::string error;
    const Result<std::vector<CredentialEntry>> entries = list_credentials(options.directory, error);
    if (!entries) {
        return print_failure(error);
    }
    const std::int64_t now = seconds_now();
    std::vector<std::vector<std::string>> rows{
        {"NAME", "ROLE", "LOGGER", "DOMAINS", "VALID UNTIL", "SERIAL", "STATE"}};
    for (const CredentialEntry& entry : *entries) {
        rows.push_back(
            {entry.name, entry.role, entry.host_and_app.empty() ? "" : entry.host_and_app + "xxxx",
             entry.domains, entry.serial.empty() ? "" : utc_text(entry.validity.to), entry.serial,
             state_of(entry, now) + (entry.is_elsewhere ? ", no folder here" : "")});
    }
    return print(table_of(rows));
}

int check_keys(const KeysOptions& options) {
    const std::string folder = folder_of(options);
    std::string unreadable;
    std::string text;
    if (const Result<Permissions> permissions = read_permissions(folder, unreadable)) {
        text = displayable(fmt::format("{} ({}), valid until {}", permissions->subject,
                                       permissions->name, utc_text(permissions->not_after))) +
               '\n';
        for (const std::string& line : permissions->in_words()) {
            text += "  " + displayable(line) + '\n';
        }
        text += list_in_words(folder);
    }
    const std::vector<CredentialFinding> findings = check_credentials(folder, {}, seconds_now());
    bool is_refused = false;
    for (const CredentialFinding& finding : findings) {
        print_error((finding.fatal ? "" : "warning: ") + displayable(finding.cause));
        print_error("  -> " + displayable(finding.remedy));
        is_refused = is_refused || finding.fatal;
    }
    const int printed = print(text + (findings.empty() ? "nothing is wrong with it\n" : ""));
    return is_refused ? exit_failure : printed;
}

int revoke_keys(const KeysOptions& options) {
    std::string error;
    const Result<Authority> authority = Authority::open(options.directory, error);
    if (!authority) {
        return print_failure(error);
    }
    const Result<Revocation> revocation = authority->revoke(options.name, seconds_now(), error);
    if (!revocation) {
        return print_failure(error);
    }
    std::vector<std::string> others = revocation->names;
    std::erase(others, options.name);
    std::string text = options.name + " is revoked: those refuse it that have the new list\n";
    if (!others.empty()) {
        constexpr std::size_t width = 100;
        const std::string list = fmt::format("  {}", fmt::join(others, " "));
        text += fmt::format(
            "copy {0}/NAME/{1} to the machine of each NAME, and restart what uses it:\n{2}\n",
            options.directory, revoked_file, wrapped(list, width, 2));
    }
    const int printed = print(text);
    for (const std::string& failure : revocation->failures) {
        print_error("orvane: " + failure);
    }
    if (!revocation->failures.empty()) {
        return print_failure(fmt::format("these have no new list: copy {}/{}/{} there",
                                         options.directory, authority_folder, revoked_file));
    }
    return printed;
}

int renew_keys(const KeysOptions& options) {
    std::string error;
    const Result<Authority> authority = Authority::open(options.directory, error);
    if (!authority ||
        authority->renew(options.name, options.days, seconds_now(), error) == Status::failed) {
        return print_failure(error);
    }
    return print(fmt::format(
        "{0} is renewed: copy {1} and {2} of it to the machine of {3}, and restart what "
        "uses them\n",
        folder_of(options), certificate_file, permissions_file, options.name));
}

int print_keys_profile(const KeysOptions& options) {
    const std::string folder = folder_of(options);
    std::string error;
    if (!load_certificate(join(folder, certificate_file), error)) {
        return print_failure(error + ", expected a folder that 'orvane keys issue' has made");
    }
    const std::string profile = security_profile(folder);
    if (options.output.empty()) {
        return print(profile);
    }
    return write_whole_file(options.output, profile, public_mode, error) == Status::ok
               ? exit_success
               : print_failure(error);
}

}  // namespace orvane::tools

#include "tools/subcommands/domain_access.hpp"

#include <fmt/format.h>
#include <orvane/admin.h>
#include <orvane/statistics.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>

#include "tools/domain/middleware_output.hpp"
#include "tools/security/certificates.hpp"
#include "tools/security/credential_check.hpp"
#include "tools/security/credentials.hpp"
#include "tools/security/whole_file.hpp"
#include "tools/text/display_text.hpp"

namespace orvane::tools {
namespace {

/// What is done with a topic.
struct Right {
    DomainUse use;
    Direction direction;
    const char* topic;
    const char* what;        ///< in the words of the user
    const char* without_it;  ///< what happens then; NULL: the subcommand is in vain
};

constexpr Right rights[] = {
    {DomainUse::read_messages, Direction::subscribe, QEL_KX_LOG_TOPIC_NAME, "read messages",
     nullptr},
    {DomainUse::read_messages, Direction::subscribe, QEL_KX_STATE_TOPIC_NAME, "read States",
     "loggers have no names"},
    {DomainUse::read_messages, Direction::subscribe, QEL_KX_STATISTICS_TOPIC_NAME,
     "read statistics", "not all losses are seen"},
    {DomainUse::read_states, Direction::subscribe, QEL_KX_STATE_TOPIC_NAME, "read States", nullptr},
    {DomainUse::read_states, Direction::subscribe, QEL_KX_STATISTICS_TOPIC_NAME, "read statistics",
     "rates and losses are not shown"},
    {DomainUse::command, Direction::subscribe, QEL_KX_STATE_TOPIC_NAME, "read States", nullptr},
    {DomainUse::command, Direction::publish, QEL_KX_COMMAND_REQUEST_TOPIC_NAME, "send commands",
     nullptr},
    {DomainUse::command, Direction::subscribe, QEL_KX_COMMAND_RESPONSE_TOPIC_NAME,
     "read answers to commands", nullptr},
    {DomainUse::publish, Direction::subscribe, QEL_KX_STATE_TOPIC_NAME, "read States", nullptr},
    {DomainUse::publish, Direction::publish, QEL_KX_STATE_TOPIC_NAME, "publish States", nullptr},
    {DomainUse::publish, Direction::publish, QEL_KX_LOG_TOPIC_NAME, "publish messages", nullptr},
};

bool has(const Permissions& permissions, const Right& right, std::int32_t domain_id) {
    return right.direction == Direction::publish
               ? permissions.may_publish(right.topic, domain_id)
               : permissions.may_subscribe(right.topic, domain_id);
}

std::string remedy_for(DomainUse use) {
    switch (use) {
        case DomainUse::command:
            return "use credentials of an operator: orvane keys issue DIR NAME --role operator";
        case DomainUse::publish:
            return fmt::format(
                "use credentials that may: orvane keys issue DIR NAME --role viewer --publish {} "
                "--publish {}",
                QEL_KX_LOG_TOPIC_NAME, QEL_KX_STATE_TOPIC_NAME);
        case DomainUse::read_messages:
        case DomainUse::read_states:
            break;
    }
    return "use credentials of a viewer or an operator: orvane keys issue DIR NAME --role viewer";
}

Status check_rights(DomainOptions& domain, DomainUse use, const Permissions& permissions) {
    for (const Right& right : rights) {
        if (right.use != use || has(permissions, right, domain.id)) {
            continue;
        }
        const std::string cause =
            fmt::format("{} ({}) may not {} in domain {} (topic {})", domain.security,
                        permissions.name, right.what, domain.id, right.topic);
        if (right.without_it == nullptr) {
            print_with_remedy(cause, remedy_for(use));
            return Status::failed;
        }
        fmt::print(stderr, "orvane: {}: {}\n", displayable(cause), right.without_it);
        domain.unreadable.emplace_back(right.topic);
    }
    return Status::ok;
}

/// When the engine stops taking part, without a word.
std::int64_t expiry_of(const DomainOptions& domain, const Permissions& permissions) {
    std::string error;
    const auto pem = read_whole_file(domain.security + "/" + certificate_file, error);
    const Certificate certificate = pem ? read_certificate(*pem) : nullptr;
    return certificate ? std::min(validity_of(*certificate).to, permissions.not_after)
                       : permissions.not_after;
}

}  // namespace

void print_with_remedy(const std::string& cause, const std::string& remedy) {
    fmt::print(stderr, "orvane: {}\n  -> {}\n", displayable(cause), displayable(remedy));
}

Status check_access(DomainOptions& domain, DomainUse use) {
    if (domain.security.empty()) {
        return Status::ok;
    }
    const std::int64_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    Status status = Status::ok;
    for (const CredentialFinding& finding : check_credentials(domain.security, domain.id, now)) {
        print_with_remedy(finding.cause, finding.remedy);
        status = finding.fatal ? Status::failed : status;
    }
    if (status == Status::failed) {
        return status;
    }
    std::string error;
    const Result<Permissions> permissions = read_permissions(domain.security, error);
    if (!permissions) {
        fmt::print(stderr, "orvane: {}\n", displayable(error));
        return Status::failed;
    }
    domain.expiry = expiry_of(domain, *permissions);
    return check_rights(domain, use, *permissions);
}

void stop_at_expiry(const DomainOptions& domain, StopSignal& stop) {
    if (domain.expiry) {
        // Certificates that never expire name a time that the clock cannot.
        constexpr std::int64_t longest = std::chrono::duration_cast<std::chrono::seconds>(
                                             std::chrono::system_clock::duration::max())
                                             .count();
        stop.stop_at(
            std::chrono::system_clock::from_time_t(std::min(*domain.expiry, longest)),
            [folder = domain.security] {
                silence_middleware();
                print_with_remedy(
                    folder + " has expired",
                    "renew it with 'orvane keys renew' where the authority is, and copy it here");
            });
    }
}

}  // namespace orvane::tools

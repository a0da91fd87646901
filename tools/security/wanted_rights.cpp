#include "tools/security/wanted_rights.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "tools/security/permissions_document.hpp"
#include "tools/security/utc_text.hpp"
#include "tools/text/utf8.hpp"

namespace orvane::tools {
namespace {

/// Why the rules of a grant cannot be put into another one; empty when they can.
std::string obstacle_of(const Permissions& grant, const Validity& validity) {
    if (grant.allows_by_default) {
        return "allows by default, expected DENY: what is allowed has to be named";
    }
    if (grant.not_before > validity.from) {
        return fmt::format("holds from {} on, expected {} or earlier, as the certificate",
                           utc_text(grant.not_before), utc_text(validity.from));
    }
    if (grant.not_after < validity.to) {
        return fmt::format("holds until {}, expected {} or later, as the certificate",
                           utc_text(grant.not_after), utc_text(validity.to));
    }
    return {};
}

Status add_document(const WantedRights& wanted, const std::string& name, const Validity& validity,
                    std::vector<PermissionRule>& rules, std::string& error) {
    const Result<std::vector<Permissions>> grants = parse_permissions(wanted.document, error);
    if (!grants) {
        return Status::failed;
    }
    const std::string subject = "CN=" + name;
    const std::size_t before = rules.size();
    for (const Permissions& grant : *grants) {
        if (!grant.subject.empty() && grant.subject != subject) {
            continue;
        }
        const std::string obstacle = obstacle_of(grant, validity);
        if (!obstacle.empty()) {
            error = fmt::format("the grant '{}' {}", grant.name, obstacle);
            return Status::failed;
        }
        rules.insert(rules.end(), grant.rules.begin(), grant.rules.end());
    }
    if (rules.size() == before) {
        error = fmt::format(
            "no rules for {}, expected a grant with this subject_name or without one", subject);
        return Status::failed;
    }
    return Status::ok;
}

}  // namespace

std::string grant_name_of(const WantedRights& wanted) {
    const bool has_own =
        !wanted.publish.empty() || !wanted.subscribe.empty() || !wanted.document.empty();
    if (!wanted.role) {
        return "own";
    }
    return name_of(*wanted.role) + (has_own ? "+own" : "");
}

Result<std::vector<PermissionRule>> rules_of(const WantedRights& wanted, const std::string& name,
                                             const Validity& validity, std::string& error) {
    PermissionRule rule;
    for (const std::int32_t domain_id : wanted.domains) {
        rule.domains.push_back({domain_id, domain_id});
    }
    if (rule.domains.empty()) {
        rule.domains.push_back({});
    }
    if (wanted.role) {
        rule.rights = rights_of(*wanted.role, wanted.topics.value_or("*"));
        if (rule.rights.empty()) {
            error = fmt::format("'{}' is none of the topics of the role {}", *wanted.topics,
                                name_of(*wanted.role));
            return std::nullopt;
        }
    }
    if (!wanted.publish.empty()) {
        rule.rights.push_back({Direction::publish, wanted.publish});
    }
    if (!wanted.subscribe.empty()) {
        rule.rights.push_back({Direction::subscribe, wanted.subscribe});
    }
    Result<std::vector<PermissionRule>> rules{std::vector<PermissionRule>{}};
    if (!rule.rights.empty()) {
        rules->push_back(rule);
    }
    if (!wanted.document.empty() &&
        add_document(wanted, name, validity, *rules, error) == Status::failed) {
        return std::nullopt;
    }
    return rules;
}

bool is_topic_pattern(std::string_view pattern) {
    return !pattern.empty() && printable_ascii(pattern).size() == pattern.size() &&
           pattern.find_first_of(" <>&\"'") == std::string_view::npos;
}

}  // namespace orvane::tools

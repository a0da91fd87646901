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

/// Products differ in how they read brackets with more than characters and ranges, and open ones.
bool is_ambiguous(std::string_view pattern) {
    for (std::size_t open = pattern.find('['); open != std::string_view::npos;
         open = pattern.find('[', open)) {
        const std::size_t close = pattern.find(']', open + 1);
        const std::string_view inner = pattern.substr(open + 1, close - open - 1);
        if (close == std::string_view::npos || inner.empty() ||
            inner.find_first_of("[^\\") != std::string_view::npos) {
            return true;
        }
        open = close;
    }
    return false;
}

std::optional<std::string> ambiguous_pattern_in(const PermissionRule& rule) {
    for (const TopicRight& right : rule.rights) {
        for (const std::vector<std::string>* patterns : {&right.topics, &right.partitions}) {
            const auto found = std::find_if(patterns->begin(), patterns->end(), is_ambiguous);
            if (found != patterns->end()) {
                return *found;
            }
        }
    }
    return std::nullopt;
}

Status add_document(const WantedRights& wanted, const std::string& name, const Validity& validity,
                    std::vector<PermissionRule>& rules, std::string& error) {
    constexpr std::size_t most = 64 << 10U;
    if (wanted.document->size() > most) {
        error = "expected at most 64 KiB, because all that is allowed goes into each handshake";
        return Status::failed;
    }
    const Result<std::vector<Permissions>> grants = parse_permissions(*wanted.document, error);
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
        for (const PermissionRule& rule : grant.rules) {
            const auto pattern = ambiguous_pattern_in(rule);
            if (pattern) {
                error = fmt::format(
                    "'{}' means something else to others, expected [ with ] behind "
                    "it and without [, ^ and \\ in it",
                    *pattern);
                return Status::failed;
            }
            rules.push_back(rule);
        }
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
    const bool has_own = !wanted.publish.empty() || !wanted.subscribe.empty() || wanted.document;
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
    if (wanted.document && add_document(wanted, name, validity, *rules, error) == Status::failed) {
        return std::nullopt;
    }
    return rules;
}

bool is_topic_pattern(std::string_view pattern) {
    return !pattern.empty() && printable_ascii(pattern).size() == pattern.size() &&
           pattern.find_first_of(" <>&\"'") == std::string_view::npos && !is_ambiguous(pattern);
}

}  // namespace orvane::tools

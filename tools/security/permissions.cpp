#include "tools/security/permissions.hpp"

#include <fmt/format.h>
#include <fnmatch.h>

#include <algorithm>

namespace orvane::tools {
namespace {

bool matches(const std::vector<std::string>& patterns, const std::string& name) {
    return std::any_of(patterns.begin(), patterns.end(), [&](const std::string& pattern) {
        return fnmatch(pattern.c_str(), name.c_str(), FNM_NOESCAPE) == 0;
    });
}

bool concerns(const PermissionRule& rule, Direction direction, const std::string& topic) {
    return std::any_of(rule.rights.begin(), rule.rights.end(), [&](const TopicRight& right) {
        const bool has_default_partition =
            right.partitions.empty() || matches(right.partitions, "");
        return right.direction == direction && has_default_partition &&
               matches(right.topics, topic);
    });
}

bool may(const Permissions& permissions, Direction direction, const std::string& topic,
         std::int32_t domain_id) {
    for (const PermissionRule& rule : permissions.rules) {
        if (contains(rule.domains, domain_id) && concerns(rule, direction, topic)) {
            return rule.allows;
        }
    }
    return permissions.allows_by_default;
}

}  // namespace

bool contains(const std::vector<DomainRange>& ranges, std::int32_t domain_id) {
    return std::any_of(ranges.begin(), ranges.end(), [&](const DomainRange& range) {
        return range.first <= domain_id && domain_id <= range.last;
    });
}

std::string text_of(std::vector<DomainRange> ranges) {
    std::sort(ranges.begin(), ranges.end(), [](const DomainRange& left, const DomainRange& right) {
        return left.first < right.first;
    });
    std::vector<DomainRange> merged;
    for (const DomainRange& range : ranges) {
        if (merged.empty() || range.first > merged.back().last + 1) {
            merged.push_back(range);
        } else {
            merged.back().last = std::max(merged.back().last, range.last);
        }
    }
    std::string text;
    for (const DomainRange& range : merged) {
        text += text.empty() ? "" : ", ";
        text += range.first == range.last ? std::to_string(range.first)
                                          : fmt::format("{}-{}", range.first, range.last);
    }
    return text;
}

bool Permissions::may_join(std::int32_t domain_id) const {
    return contains(domains(), domain_id);
}

bool Permissions::may_publish(const std::string& topic, std::int32_t domain_id) const {
    return may(*this, Direction::publish, topic, domain_id);
}

bool Permissions::may_subscribe(const std::string& topic, std::int32_t domain_id) const {
    return may(*this, Direction::subscribe, topic, domain_id);
}

std::vector<DomainRange> Permissions::domains() const {
    if (allows_by_default) {
        return {DomainRange{}};
    }
    std::vector<DomainRange> ranges;
    for (const PermissionRule& rule : rules) {
        if (rule.allows) {
            ranges.insert(ranges.end(), rule.domains.begin(), rule.domains.end());
        }
    }
    return ranges;
}

std::vector<std::string> Permissions::in_words() const {
    std::vector<std::string> lines;
    for (const PermissionRule& rule : rules) {
        for (const TopicRight& right : rule.rights) {
            lines.push_back(fmt::format(
                "{} {} {}{} in domains {}", rule.allows ? "may" : "may not",
                right.direction == Direction::publish ? "publish" : "subscribe to",
                fmt::join(right.topics, ", "),
                right.partitions.empty()
                    ? ""
                    : fmt::format(" in the partitions '{}'", fmt::join(right.partitions, "', '")),
                text_of(rule.domains)));
        }
    }
    lines.emplace_back(allows_by_default ? "may do anything else" : "may do nothing else");
    return lines;
}

}  // namespace orvane::tools

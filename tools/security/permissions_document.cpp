#include "tools/security/permissions_document.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <optional>
#include <pugixml.hpp>
#include <sstream>
#include <stdexcept>
#include <system_error>

#include "tools/security/utc_text.hpp"
#include "tools/text/display_text.hpp"
#include "tools/text/time_text.hpp"

namespace orvane::tools {
namespace {

constexpr std::int64_t nanoseconds_per_second = 1'000'000'000;

void append_text(pugi::xml_node parent, const char* name, const std::string& text) {
    parent.append_child(name).text().set(text.c_str());
}

void append_domains(pugi::xml_node rule, const std::vector<DomainRange>& ranges) {
    pugi::xml_node domains = rule.append_child("domains");
    for (const DomainRange& range : ranges) {
        if (range.first == range.last) {
            append_text(domains, "id", std::to_string(range.first));
            continue;
        }
        pugi::xml_node element = domains.append_child("id_range");
        append_text(element, "min", std::to_string(range.first));
        append_text(element, "max", std::to_string(range.last));
    }
}

void append_names(pugi::xml_node parent, const char* list, const char* name,
                  const std::vector<std::string>& names) {
    if (names.empty()) {
        return;
    }
    pugi::xml_node element = parent.append_child(list);
    for (const std::string& each : names) {
        append_text(element, name, each);
    }
}

void append_rule(pugi::xml_node grant, const PermissionRule& rule) {
    pugi::xml_node element = grant.append_child(rule.allows ? "allow_rule" : "deny_rule");
    append_domains(element, rule.domains);
    for (const TopicRight& right : rule.rights) {
        pugi::xml_node criteria =
            element.append_child(right.direction == Direction::publish ? "publish" : "subscribe");
        append_names(criteria, "topics", "topic", right.topics);
        append_names(criteria, "partitions", "partition", right.partitions);
    }
}

/// Thrown inside this file.
struct Refusal : std::runtime_error {
    Refusal(pugi::xml_node where, const std::string& text)
        : std::runtime_error(text), offset(where.offset_debug()) {}
    std::ptrdiff_t offset;
};

std::string described(pugi::xml_node found) {
    switch (found.type()) {
        case pugi::node_element:
            return fmt::format("element {}", found.name());
        case pugi::node_doctype:
            return "DOCTYPE";
        case pugi::node_null:
            return "nothing";
        default:
            return "text";
    }
}

[[noreturn]] void refuse_element(pugi::xml_node found, const char* expected) {
    throw Refusal(found, fmt::format("{} in {}, expected {}", described(found),
                                     found.parent().name(), expected));
}

/// Other readers would put the pieces together in another way, and the engine ends the process when
/// there is none.
std::string text_in(pugi::xml_node element) {
    for (const pugi::xml_node child : element.children()) {
        if (child.type() == pugi::node_element) {
            refuse_element(child, "text");
        }
    }
    if (element.first_child() != element.last_child()) {
        throw Refusal(element, fmt::format("text in pieces in {}, expected no comment in it",
                                           element.name()));
    }
    std::string text = element.text().get();
    const char* blanks = " \t\r\n";
    text.erase(0, std::min(text.find_first_not_of(blanks), text.size()));
    text.erase(text.find_last_not_of(blanks) + 1);
    if (text.empty()) {
        throw Refusal(element, fmt::format("{} without text", element.name()));
    }
    if (displayable(text) != text) {
        throw Refusal(element, fmt::format("'{}' in {}, expected UTF-8 without control characters",
                                           displayable(text), element.name()));
    }
    return text;
}

/// Refuses what is there a second time: only one of the two would count.
void require_first(pugi::xml_node element) {
    if (element.previous_sibling(element.name())) {
        throw Refusal(element, fmt::format("a second {} in {}, expected one", element.name(),
                                           element.parent().name()));
    }
}

std::int32_t domain_in(pugi::xml_node element) {
    const std::string text = text_in(element);
    std::int32_t number = -1;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (failure != std::errc{} || end != text.data() + text.size() || number < 0 ||
        number > last_secured_domain) {
        throw Refusal(element,
                      fmt::format("'{}' is no domain, expected 0 to {}, which the engine's "
                                  "access control knows",
                                  text, last_secured_domain));
    }
    return number;
}

DomainRange range_in(pugi::xml_node element) {
    std::optional<std::int32_t> least;
    std::optional<std::int32_t> greatest;
    for (const pugi::xml_node child : element.children()) {
        require_first(child);
        if (child.name() == std::string_view{"min"}) {
            least = domain_in(child);
        } else if (child.name() == std::string_view{"max"}) {
            greatest = domain_in(child);
        } else {
            refuse_element(child, "min and max");
        }
    }
    if (!least || !greatest || *least > *greatest) {
        throw Refusal(element, "id_range, expected min and max, and min not above max");
    }
    return {*least, *greatest};
}

std::vector<DomainRange> domains_in(pugi::xml_node element) {
    std::vector<DomainRange> ranges;
    for (const pugi::xml_node child : element.children()) {
        if (child.name() == std::string_view{"id"}) {
            const std::int32_t domain_id = domain_in(child);
            ranges.push_back({domain_id, domain_id});
        } else if (child.name() == std::string_view{"id_range"}) {
            ranges.push_back(range_in(child));
        } else {
            refuse_element(child, "id or id_range");
        }
    }
    return ranges;
}

std::vector<std::string> names_in(pugi::xml_node list, const char* name) {
    std::vector<std::string> names;
    for (const pugi::xml_node child : list.children()) {
        if (child.name() != std::string_view{name}) {
            refuse_element(child, name);
        }
        names.push_back(text_in(child));
    }
    return names;
}

TopicRight right_in(pugi::xml_node criteria, Direction direction) {
    TopicRight right{direction, {}, {}};
    for (const pugi::xml_node child : criteria.children()) {
        require_first(child);
        if (child.name() == std::string_view{"topics"}) {
            right.topics = names_in(child, "topic");
        } else if (child.name() == std::string_view{"partitions"}) {
            right.partitions = names_in(child, "partition");
        } else {
            refuse_element(child, "topics or partitions, the criteria that the engine knows");
        }
    }
    if (right.topics.empty()) {
        throw Refusal(criteria, fmt::format("{} without topics", criteria.name()));
    }
    return right;
}

PermissionRule rule_in(pugi::xml_node element, bool allows) {
    PermissionRule rule{allows, {}, {}};
    for (const pugi::xml_node child : element.children()) {
        const std::string_view name = child.name();
        if (name == "domains") {
            require_first(child);
            rule.domains = domains_in(child);
        } else if (name == "publish" || name == "subscribe") {
            rule.rights.push_back(
                right_in(child, name == "publish" ? Direction::publish : Direction::subscribe));
        } else {
            refuse_element(child, "domains, publish or subscribe, which the engine knows");
        }
    }
    if (rule.domains.empty()) {
        throw Refusal(element, fmt::format("{} without domains", element.name()));
    }
    return rule;
}

std::int64_t date_in(pugi::xml_node element) {
    const std::string text = text_in(element);
    std::optional<std::int64_t> time = parse_time(text);
    if (!time) {
        // Without a zone it is universal time.
        time = parse_time(text + 'Z');
    }
    if (!time) {
        throw Refusal(element,
                      fmt::format("'{}', expected a date such as 2026-01-31T12:00:00Z", text));
    }
    return *time / nanoseconds_per_second;
}

void read_validity(pugi::xml_node element, Permissions& permissions) {
    for (const pugi::xml_node child : element.children()) {
        require_first(child);
        if (child.name() == std::string_view{"not_before"}) {
            permissions.not_before = date_in(child);
        } else if (child.name() == std::string_view{"not_after"}) {
            permissions.not_after = date_in(child);
        } else {
            refuse_element(child, "not_before and not_after");
        }
    }
}

bool default_in(pugi::xml_node element) {
    const std::string text = text_in(element);
    if (text != "ALLOW" && text != "DENY") {
        throw Refusal(element, fmt::format("'{}', expected ALLOW or DENY", text));
    }
    return text == "ALLOW";
}

Permissions grant_in(pugi::xml_node grant) {
    Permissions permissions;
    permissions.name = grant.attribute("name").value();
    permissions.not_before = std::numeric_limits<std::int64_t>::min();
    permissions.not_after = std::numeric_limits<std::int64_t>::max();
    for (const pugi::xml_node child : grant.children()) {
        const std::string_view name = child.name();
        if (name != "allow_rule" && name != "deny_rule") {
            require_first(child);
        }
        if (name == "subject_name") {
            permissions.subject = text_in(child);
        } else if (name == "validity") {
            read_validity(child, permissions);
        } else if (name == "allow_rule" || name == "deny_rule") {
            permissions.rules.push_back(rule_in(child, name == "allow_rule"));
        } else if (name == "default") {
            permissions.allows_by_default = default_in(child);
        } else {
            refuse_element(child, "subject_name, validity, allow_rule, deny_rule or default");
        }
    }
    return permissions;
}

std::vector<Permissions> grants_in(const pugi::xml_document& document) {
    const pugi::xml_node root = document.first_child();
    if (root.name() != std::string_view{"dds"}) {
        throw Refusal(root, fmt::format("{}, expected dds", described(root)));
    }
    if (const pugi::xml_node other = root.next_sibling()) {
        throw Refusal(other, fmt::format("{} behind dds, expected nothing", described(other)));
    }
    std::vector<Permissions> grants;
    for (const pugi::xml_node permissions : root.children()) {
        if (permissions.name() != std::string_view{"permissions"}) {
            refuse_element(permissions, "permissions");
        }
        for (const pugi::xml_node grant : permissions.children()) {
            if (grant.name() != std::string_view{"grant"}) {
                refuse_element(grant, "grant");
            }
            grants.push_back(grant_in(grant));
        }
    }
    return grants;
}

}  // namespace

std::string permissions_xml(const Permissions& permissions) {
    pugi::xml_document document;
    pugi::xml_node grant =
        document.append_child("dds").append_child("permissions").append_child("grant");
    grant.append_attribute("name").set_value(permissions.name.c_str());
    append_text(grant, "subject_name", permissions.subject);
    pugi::xml_node validity = grant.append_child("validity");
    append_text(validity, "not_before", utc_text(permissions.not_before));
    append_text(validity, "not_after", utc_text(permissions.not_after));
    for (const PermissionRule& rule : permissions.rules) {
        append_rule(grant, rule);
    }
    append_text(grant, "default", permissions.allows_by_default ? "ALLOW" : "DENY");
    std::ostringstream text;
    document.save(text, "  ");
    return text.str();
}

Result<std::vector<Permissions>> parse_permissions(std::string_view xml, std::string& error) {
    const auto refuse = [&](std::ptrdiff_t offset, const std::string& text) {
        const auto before = static_cast<std::size_t>(std::max<std::ptrdiff_t>(offset, 0));
        const auto lines =
            std::count(xml.begin(), xml.begin() + std::min(before, xml.size()), '\n');
        error = fmt::format("line {}: {}", lines + 1, text);
        return std::nullopt;
    };
    pugi::xml_document document;
    const pugi::xml_parse_result parsed = document.load_buffer(
        xml.data(), xml.size(), pugi::parse_default | pugi::parse_doctype | pugi::parse_fragment);
    if (!parsed) {
        return refuse(parsed.offset, parsed.description());
    }
    try {
        return grants_in(document);
    } catch (const Refusal& refusal) {
        return refuse(refusal.offset, refusal.what());
    }
}

}  // namespace orvane::tools

/// @file permissions.hpp
/// @brief What a participant may do, by the permissions that its authority has signed.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace orvane::tools {

/// The last domain that the engine's access control knows.
inline constexpr std::int32_t last_secured_domain = 230;

struct DomainRange {
    std::int32_t first = 0;
    std::int32_t last = last_secured_domain;

    bool operator==(const DomainRange&) const = default;
};

bool contains(const std::vector<DomainRange>& ranges, std::int32_t domain_id);

/// "0, 7, 10-20".
std::string text_of(std::vector<DomainRange> ranges);

enum class Direction { publish, subscribe };

/// Topics in partitions. All names are patterns as in a shell; no partition stands for the default
/// one.
struct TopicRight {
    Direction direction = Direction::publish;
    std::vector<std::string> topics;
    std::vector<std::string> partitions{};

    bool operator==(const TopicRight&) const = default;
};

struct PermissionRule {
    bool allows = true;
    std::vector<DomainRange> domains;
    std::vector<TopicRight> rights;

    bool operator==(const PermissionRule&) const = default;
};

/// A grant of a permissions document. The first rule that concerns something decides about it.
struct Permissions {
    std::string name;             ///< of the grant: the role, or "own"
    std::string subject;          ///< of the certificate that has these permissions, as "CN=pump"
    std::int64_t not_before = 0;  ///< seconds since 1970-01-01 UTC
    std::int64_t not_after = 0;
    std::vector<PermissionRule> rules;
    bool allows_by_default = false;

    /// Whether there may be a participant in the domain.
    bool may_join(std::int32_t domain_id) const;

    /// @name Whether a writer or reader of the topic in the default partition is allowed.
    /// @{
    bool may_publish(const std::string& topic, std::int32_t domain_id) const;
    bool may_subscribe(const std::string& topic, std::int32_t domain_id) const;
    /// @}

    /// All domains in which something is allowed.
    std::vector<DomainRange> domains() const;

    /// Lines such as "may publish a, b in domains 0-230".
    std::vector<std::string> in_words() const;
};

}  // namespace orvane::tools

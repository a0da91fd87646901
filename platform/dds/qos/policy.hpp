/// @file policy.hpp
/// @brief What is known of a QoS policy: a row per member, from which every operation is made.
#pragma once

#include <algorithm>
#include <array>
#include <cstdio>
#include <span>
#include <string_view>

#include "pexa/qos.h"
#include "platform/engine/qos.hpp"
#include "platform/internal/status.hpp"

namespace pexa::dds {

/// When an entity lets its owner change a policy.
enum class Change {
    always,
    until_enabled,
    never,  ///< the port fills in the policy and ignores what a caller stores there
};

/// What is wrong with a QoS, with the values; without a text nothing is.
struct [[nodiscard]] QosFault {
    QosFault() = default;
    /// @param format as printf() has it; a text that is too long is cut, and ends in dots
    template <typename... Values>
    explicit QosFault(const char* format, Values... values) {
        const int length = std::snprintf(text.data(), text.size(), format, values...);
        if (length >= static_cast<int>(text.size())) {
            std::fill(text.end() - 4, text.end() - 1, '.');
        }
    }
    explicit operator bool() const { return text[0] != '\0'; }

    std::array<char, 192> text{};
    /// The names of the policies that are at fault; NULL for none.
    std::array<const char*, 2> policies{};
};

/// The types of values that policies consist of.
enum class ValueKind {
    boolean,
    enumerator,
    number,
    limit,  ///< a positive number or DDS_LENGTH_UNLIMITED
    duration,
    string,
    octets,
    strings,
    properties,
};

struct Enumeration {
    std::string_view suffix;             ///< what the names of all its enumerators end in
    std::span<const char* const> names;  ///< of the C enumerators, by number
};

/// What can be done with a value of a type.
struct ValueType {
    ValueKind kind;
    Enumeration enumeration;  ///< empty for values of another kind
    /// Deep copy. @return out_of_resources without memory; the value is then valid.
    Status (*copy)(void* value, const void* from);
    /// Frees what the value owns. The value is then as initialised.
    void (*finalize)(void* value);
    bool (*equal)(const void* left, const void* right);
};

/// A row of a policy's table. The functions take the policy's record.
struct PolicyMember {
    const char* name;  ///< of the member, and of its element in XML profiles
    const ValueType* type;
    void* (*locate)(void* policy);
    /// Stores the DDS standard's default.
    void (*initialize)(void* policy);
    /// Its text goes on after the member's name.
    QosFault (*fault)(const void* policy);
    /// Sets the member's counterpart, if there is one. May throw std::bad_alloc.
    void (*to_engine)(const void* policy, engine::Qos& qos);
    /// Leaves the member alone when @p qos lacks the counterpart; a list of properties is never
    /// lacking, only empty.
    Status (*from_engine)(const engine::Qos& qos, void* policy);

    const void* locate_constant(const void* policy) const {
        // Only the address is made; the object behind it stays constant.
        return locate(const_cast<void*>(policy));
    }
};

/// All that is known of a policy. The operations take the policy's record.
struct Policy {
    Change change;
    std::span<const PolicyMember> members;
    /// Finds members that contradict each other.
    QosFault (*contradiction)(const void* policy);

    void initialize(void* policy) const;
    /// @return out_of_resources without memory; the policy is then valid but may be incomplete.
    Status copy(void* policy, const void* from) const;
    void finalize(void* policy) const;
    bool equal(const void* left, const void* right) const;
    /// Looks at the policy by itself.
    QosFault fault(const void* policy) const;
    /// May throw std::bad_alloc, because the engine's QoS consists of standard containers.
    void to_engine(const void* policy, engine::Qos& qos) const;
    /// @return out_of_resources without memory
    Status from_engine(const engine::Qos& qos, void* policy) const;
};

}  // namespace pexa::dds

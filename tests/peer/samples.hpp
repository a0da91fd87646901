/// @file samples.hpp
/// @brief The topics of a logger as another product knows them from their description.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "tests/peer/parameter_list.hpp"

namespace foreign {

enum class ValueKind : std::uint8_t { identity, number, text, pairs };

/// A member; its id is its place in the type.
struct Member {
    const char* name;
    ValueKind kind;
};

struct TopicDescription {
    const char* record;  ///< the beginning of the lines of its samples
    const char* name;
    const char* type_name;
    std::size_t key_members;  ///< how many, from the first on
    std::vector<Member> members;
};

extern const TopicDescription log_topic;
extern const TopicDescription state_topic;
extern const TopicDescription request_topic;
extern const TopicDescription response_topic;

using KeyHash = std::array<std::uint8_t, 16>;

struct Sample {
    std::uint16_t encapsulation = 0;
    /// Name and value of each member, in the order in which they came.
    std::vector<std::pair<std::string, std::string>> fields;
    KeyHash key_hash{};
};

/// Throws an exception when anything in @p payload is not as described.
Sample decode(const TopicDescription& topic, const Bytes& payload);

/// Encodes a command request as its words say:
///
///   target=HOST:APP originator=HOST:APP invocation=N     identities in hexadecimal
///   level=N | verbosities=CATEGORY:VERBOSITY,… | format=N
///   encapsulation=N                                      another identifier than 3
///
/// Throws an exception when it cannot.
Bytes encode_request(const std::string& text);

}  // namespace foreign

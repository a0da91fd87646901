/// @file note_node.hpp
/// @brief A participant with a topic of numbered notes.
///
/// The payload of a note is parameter-list encapsulation, the number (the key) and the text; a key
/// payload ends after the number.
#pragma once

#include <memory>
#include <string_view>

#include <gtest/gtest.h>

#include "platform/engine/engine.hpp"

namespace pexa::engine {

Bytes note(std::uint32_t number, std::string_view text);
KeyHash note_hash(std::uint32_t number);
std::shared_ptr<Type> note_type();

inline constexpr Nanoseconds millisecond = 1'000'000;
inline constexpr Nanoseconds patience = 20'000 * millisecond;

struct Node {
    Node();
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;
    ~Node() { EXPECT_EQ(delete_entity(participant), Status::ok); }

    /// @return a writer that is reliable and transient local.
    EntityId writer(HistoryPolicy history, bool batching) const;

    EntityId participant;
    EntityId topic;
};

Status write_note(EntityId writer, std::string_view text);

}  // namespace pexa::engine

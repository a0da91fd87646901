/// @file node.hpp
/// @brief A participant with a topic of notes.
#pragma once

#include <gtest/gtest.h>

#include "tests/platform/engine/note_type.hpp"

namespace pexa::engine {

inline constexpr Nanoseconds millisecond = 1'000'000;
inline constexpr Nanoseconds patience = 20'000 * millisecond;

/// Reliable, transient local, keeps everything.
inline Qos keep_everything() {
    Qos qos;
    qos.durability = DurabilityKind::transient_local;
    qos.reliability = ReliabilityPolicy{ReliabilityKind::reliable, 1000 * millisecond};
    qos.history = HistoryPolicy{HistoryKind::keep_all, 1};
    return qos;
}

struct Node {
    Node()
        : participant(create_participant(ORVANE_TEST_DOMAIN, {}).entity),
          publisher(create_publisher(participant, {}).entity),
          subscriber(create_subscriber(participant, {}).entity) {
        const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
        topic = create_topic(participant, test->name(), std::make_shared<NoteType>(), {}).entity;
    }
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;
    ~Node() { EXPECT_EQ(delete_entity(participant), Status::ok); }

    EntityId writer(const Qos& qos = keep_everything()) const {
        return create_writer(publisher, topic, qos).entity;
    }
    EntityId reader(const Qos& qos = keep_everything()) const {
        return create_reader(subscriber, topic, qos).entity;
    }

    EntityId participant;
    EntityId publisher;
    EntityId subscriber;
    EntityId topic;
};

/// Waits for a status to change, and reads it.
inline CommunicationStatus await_status(EntityId entity, StatusMask kind) {
    const EntityId wait_set = create_wait_set().entity;
    EXPECT_EQ(set_status_condition(entity, kind), Status::ok);
    EXPECT_EQ(attach(wait_set, entity), Status::ok);
    std::vector<EntityId> triggered;
    EXPECT_EQ(wait(wait_set, patience, triggered), Status::ok);
    EXPECT_EQ(delete_entity(wait_set), Status::ok);
    EXPECT_NE(status_changes(entity) & kind, 0U);
    CommunicationStatus status;
    EXPECT_EQ(get_status(entity, kind, status), Status::ok);
    EXPECT_EQ(status_changes(entity) & kind, 0U);
    return status;
}

}  // namespace pexa::engine

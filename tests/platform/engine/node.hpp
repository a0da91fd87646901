/// @file node.hpp
/// @brief A participant with a topic, and bounded waits.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "tests/platform/engine/note_type.hpp"

namespace pexa::engine {

inline constexpr Nanoseconds millisecond = 1'000'000;
inline constexpr Nanoseconds patience = 20'000 * millisecond;

/// @return a topic name that no other test of the run uses
inline std::string topic_of_this_test() {
    const testing::TestInfo* const test = testing::UnitTest::GetInstance()->current_test_info();
    std::string name = std::string(test->test_suite_name()) + "_" + test->name();
    std::replace(name.begin(), name.end(), '/', '_');
    return name;
}

/// Reliable, transient local, keeps everything.
inline Qos keep_everything() {
    Qos qos;
    qos.durability = DurabilityKind::transient_local;
    qos.reliability = ReliabilityPolicy{ReliabilityKind::reliable, 1000 * millisecond};
    qos.history = HistoryPolicy{HistoryKind::keep_all, 1};
    return qos;
}

struct Node {
    explicit Node(const std::string& topic_name = topic_of_this_test(),
                  std::shared_ptr<const Type> type = std::make_shared<NoteType>())
        : participant(create_participant(ORVANE_TEST_DOMAIN, {}).entity),
          publisher(create_publisher(participant, {}).entity),
          subscriber(create_subscriber(participant, {}).entity),
          topic(create_topic(participant, topic_name.c_str(), std::move(type), {}).entity) {}
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;
    ~Node() { EXPECT_EQ(delete_entity(participant), Status::ok); }

    [[nodiscard]] EntityId writer(const Qos& qos = keep_everything()) const {
        return create_writer(publisher, topic, qos).entity;
    }
    [[nodiscard]] EntityId reader(const Qos& qos = keep_everything()) const {
        return create_reader(subscriber, topic, qos).entity;
    }

    EntityId participant;
    EntityId publisher;
    EntityId subscriber;
    EntityId topic;
};

/// Waits until the condition is true; each change of its state is looked at.
[[nodiscard]] inline Status await(EntityId condition, Nanoseconds timeout = patience) {
    const EntityId wait_set = create_wait_set().entity;
    EXPECT_EQ(attach(wait_set, condition), Status::ok);
    std::vector<EntityId> triggered;
    const Status result = wait(wait_set, timeout, triggered);
    EXPECT_EQ(delete_entity(wait_set), Status::ok);
    return result;
}

/// Takes until there are that many samples, or patience ends.
[[nodiscard]] inline std::vector<Sample> take_some(EntityId reader, std::size_t count) {
    const EntityId has_data = create_read_condition(reader, {}).entity;
    std::vector<Sample> samples;
    while (samples.size() < count && await(has_data) == Status::ok) {
        EXPECT_EQ(read_or_take(reader, Access::take, {}, unlimited, samples), Status::ok);
    }
    EXPECT_EQ(delete_entity(has_data), Status::ok);
    return samples;
}

/// @return the samples as "number:text" in their order, separated by blanks
[[nodiscard]] inline std::string summary(const std::vector<Sample>& samples) {
    std::string out;
    for (const Sample& sample : samples) {
        out += (out.empty() ? "" : " ") + std::to_string(number_of(sample.info.instance)) + ":" +
               text_of(sample.payload.bytes());
    }
    return out;
}

/// Waits until writer or reader has matched another one.
template <typename Matched>
[[nodiscard]] bool await_match(EntityId endpoint, StatusMask bit, int count = 1) {
    EXPECT_EQ(set_status_condition(endpoint, bit), Status::ok);
    Matched matched;
    while (get_status(endpoint, matched) == Status::ok && matched.current_count < count) {
        if (await(endpoint) != Status::ok) {
            break;
        }
    }
    EXPECT_EQ(set_status_condition(endpoint, any_status), Status::ok);
    return matched.current_count >= count;
}
[[nodiscard]] inline bool await_reader(EntityId writer, int count = 1) {
    return await_match<PublicationMatched>(writer, publication_matched_status, count);
}
[[nodiscard]] inline bool await_writer(EntityId reader, int count = 1) {
    return await_match<SubscriptionMatched>(reader, subscription_matched_status, count);
}

}  // namespace pexa::engine

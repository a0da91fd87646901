#include <gtest/gtest.h>

#include <atomic>
#include <functional>

#include "tests/platform/engine/node.hpp"

namespace pexa::engine {
namespace {

ContentFilter shorter_than(std::size_t limit) {
    return [limit](std::span<const std::byte> payload) { return text_of(payload).size() < limit; };
}

TEST(Topic, IsOfOneTypeAndItsFilterOfReadersOnly) {
    const Node node;
    const std::string name = topic_of_this_test();
    const auto type = std::make_shared<NoteType>();
    Qos different;
    different.lifespan = millisecond;
    const EntityId filtered =
        create_topic(node.participant, name.c_str(), type, {}, shorter_than(2)).entity;
    const std::pair<Status, Status> refusals[] = {
        {create_writer(node.publisher, filtered, {}).status, Status::illegal_operation},
        {set_content_filter(node.topic, shorter_than(2)), Status::illegal_operation},
        {set_content_filter(filtered, nullptr), Status::bad_parameter},
        {set_content_filter(node.participant, shorter_than(2)), Status::bad_parameter},
        {create_topic(node.participant, name.c_str(), type, different).status,
         Status::inconsistent_policy},
        {create_topic(node.participant, nullptr, type, {}).status, Status::bad_parameter},
        {create_topic(node.participant, name.c_str(), nullptr, {}).status, Status::bad_parameter},
        {create_topic(node.publisher, name.c_str(), type, {}).status, Status::illegal_operation},
        {create_writer(node.publisher, node.publisher, {}).status, Status::bad_parameter},
        {create_reader(node.subscriber, node.publisher, {}).status, Status::bad_parameter},
    };
    for (const auto& [status, expected] : refusals) {
        EXPECT_EQ(status, expected);
    }
    const EntityId writer = node.writer();
    EXPECT_EQ(delete_entity(node.topic), Status::precondition_not_met) << "it is used";
    EXPECT_EQ(delete_entity(writer), Status::ok);
    EXPECT_EQ(delete_entity(node.topic), Status::ok);
}

TEST(WaitSet, RefusesWhatIsNoCondition) {
    const Node node;
    const EntityId reader = node.reader();
    const EntityId guard = create_guard_condition().entity;
    const EntityId wait_set = create_wait_set().entity;
    std::vector<EntityId> triggered;
    EXPECT_EQ(attach(wait_set, guard), Status::ok);
    EXPECT_EQ(attach(wait_set, guard), Status::precondition_not_met);
    EXPECT_EQ(detach(wait_set, reader), Status::precondition_not_met);
    EXPECT_EQ(attach(wait_set, no_entity), Status::bad_parameter);
    EXPECT_EQ(attach(guard, reader), Status::illegal_operation);
    EXPECT_EQ(wait(guard, 0, triggered), Status::illegal_operation);
    EXPECT_EQ(set_guard_condition(reader, true), Status::illegal_operation);
    EXPECT_EQ(create_read_condition(reader, {.view_states = 0}).status, Status::bad_parameter);
    EXPECT_EQ(create_read_condition(node.topic, {}).status, Status::illegal_operation);
    EXPECT_EQ(delete_entity(wait_set), Status::ok);
    EXPECT_EQ(delete_entity(guard), Status::ok);
}

TEST(StatusOf, AnUnknownEntityIsAnError) {
    const Node node;
    const EntityId gone = node.reader();
    ASSERT_EQ(delete_entity(gone), Status::ok);
    for (const EntityId entity : {no_entity, -1, gone, node.topic}) {
        SubscriptionMatched matched;
        EXPECT_NE(get_status(entity, matched), Status::ok);
        EXPECT_FALSE(is_participant(entity));
    }
    EXPECT_TRUE(is_participant(node.participant));
    EXPECT_EQ(status_changes(gone), 0U);
    EXPECT_FALSE(is_triggered(gone));
    EXPECT_EQ(set_listener(gone, nullptr, 0), Status::bad_parameter);
    std::vector<Sample> samples;
    EXPECT_EQ(read_or_take(gone, Access::take, {}, unlimited, samples), Status::bad_parameter);
    EXPECT_EQ(delete_entity(gone), Status::bad_parameter);
}

TEST(Delivery, RefusesWhatCannotBeWritten) {
    const Node node;
    const EntityId writer = node.writer();
    const EntityId reader = node.reader();
    const auto fill = [](std::span<std::byte>) { return true; };
    const auto refuse = [](std::span<std::byte>) { return false; };
    const KeyHash key = note_hash(1);

    EXPECT_EQ(write(writer, WriteKind::data, key, 3, fill, 1), Status::bad_parameter);
    EXPECT_EQ(write(writer, WriteKind::data, key, 8, refuse, 1), Status::bad_parameter);
    EXPECT_EQ(write(writer, WriteKind::data, key, 8, fill, -1), Status::bad_parameter);
    EXPECT_EQ(write(writer, WriteKind::data, key, std::size_t{1} << 40U, fill, 1),
              Status::out_of_resources);
    EXPECT_EQ(write(reader, WriteKind::data, key, 8, fill, 1), Status::bad_parameter);
    EXPECT_FALSE(knows_instance(writer, key));
    std::vector<Sample> samples;
    EXPECT_EQ(read_or_take(reader, Access::take, {}, unlimited, samples), Status::no_data);
}

// Counts callbacks and lets a test wait for them.
class CountingListener : public Listener {
public:
    void on_data_available(EntityId reader) override {
        during_callback(reader);
        ++calls_;
        calls_.notify_all();
    }
    // The callback runs on the thread that writes, or the test has waited for it to begin.
    [[nodiscard]] int data_calls() const { return calls_; }

    std::function<void(EntityId)> during_callback;

private:
    std::atomic<int> calls_ = 0;
};

TEST(Listener, IsRefusedInItsCallbackWhatWouldWaitForItsEnd) {
    const Node node;
    const Node other;
    const EntityId reader = node.reader();
    const EntityId writer = node.writer();
    const EntityId other_reader = other.reader();
    const EntityId wait_set = create_wait_set().entity;
    CountingListener listener;
    std::vector<Sample> samples;
    listener.during_callback = [&](EntityId about) {
        EXPECT_EQ(read_or_take(about, Access::take, {}, unlimited, samples), Status::ok);
        for (const EntityId entity : {reader, node.subscriber, node.participant}) {
            EXPECT_EQ(set_listener(entity, nullptr, 0), Status::illegal_operation);
            EXPECT_EQ(delete_entity(entity), Status::illegal_operation);
        }
        for (const EntityId entity : {other_reader, other.subscriber, other.participant}) {
            EXPECT_EQ(delete_entity(entity), Status::illegal_operation);
        }
        EXPECT_EQ(set_listener(other_reader, nullptr, 0), Status::ok);
        EXPECT_EQ(delete_entity(other.publisher), Status::ok);
        EXPECT_EQ(delete_entity(wait_set), Status::ok);
    };
    ASSERT_EQ(set_listener(reader, &listener, data_available_status), Status::ok);
    ASSERT_EQ(write_note(writer, 1, "taken"), Status::ok);
    ASSERT_EQ(listener.data_calls(), 1);

    EXPECT_EQ(summary(samples), "1:taken");
    EXPECT_EQ(set_listener(reader, nullptr, 0), Status::ok);
}

}  // namespace
}  // namespace pexa::engine

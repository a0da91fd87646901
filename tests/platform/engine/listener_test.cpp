#include <gtest/gtest.h>

#include <functional>

#include "tests/platform/engine/node.hpp"

namespace pexa::engine {
namespace {

class CallingListener : public Listener {
public:
    explicit CallingListener(std::function<void(EntityId)> action) : action_(std::move(action)) {}
    // Runs on the thread that writes, which is the test's.
    void on_data_available(EntityId reader) override {
        action_(reader);
        ++calls;
    }

    int calls = 0;

private:
    std::function<void(EntityId)> action_;
};

TEST(Listener, IsRefusedInItsCallbackWhatWouldWaitForItsEnd) {
    const Node node;
    const Node other;
    const EntityId reader = node.reader();
    const EntityId writer = node.writer();
    const EntityId other_reader = other.reader();
    const EntityId wait_set = create_wait_set().entity;
    std::vector<Sample> samples;
    CallingListener listener([&](EntityId about) {
        EXPECT_EQ(read_or_take(about, Access::take, {}, unlimited, samples), Status::ok);
        for (const EntityId entity : {reader, node.subscriber, node.participant}) {
            EXPECT_EQ(set_listener(entity, {}), Status::illegal_operation);
            EXPECT_EQ(delete_entity(entity), Status::illegal_operation);
        }
        for (const EntityId entity : {other_reader, other.subscriber, other.participant}) {
            EXPECT_EQ(delete_entity(entity), Status::illegal_operation);
        }
        EXPECT_EQ(set_listener(other_reader, {}), Status::ok);
        EXPECT_EQ(delete_entity(other.publisher), Status::ok);
        EXPECT_EQ(delete_entity(wait_set), Status::ok);
    });
    ASSERT_EQ(set_listener(reader, {&listener, data_available_status}), Status::ok);
    ASSERT_EQ(write_note(writer, 1, "taken"), Status::ok);
    ASSERT_EQ(listener.calls, 1);
    EXPECT_EQ(samples.size(), 1U);
    EXPECT_EQ(set_listener(reader, {}), Status::ok);
}

}  // namespace
}  // namespace pexa::engine

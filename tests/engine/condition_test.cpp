#include <gtest/gtest.h>

#include <future>

#include "tests/engine/node.hpp"

namespace pexa::engine {
namespace {

TEST(WaitSet, ReportsTheConditionsThatAreTrue) {
    const Node node;
    const EntityId reader = node.reader();
    const EntityId writer = node.writer();
    const EntityId unread =
        create_read_condition(reader, {.sample_states = sample_not_read}).entity;
    const EntityId disposed =
        create_read_condition(reader, {.instance_states = instance_disposed}).entity;
    const EntityId guard = create_guard_condition().entity;
    const EntityId wait_set = create_wait_set().entity;
    ASSERT_TRUE(await_writer(reader));
    ASSERT_EQ(set_status_condition(reader, data_available_status), Status::ok);
    for (const EntityId condition : {unread, disposed, guard, reader}) {
        ASSERT_EQ(attach(wait_set, condition), Status::ok);
    }
    const auto wait_sorted = [wait_set](Status expected) {
        std::vector<EntityId> triggered;
        EXPECT_EQ(wait(wait_set, 0, triggered), expected);
        std::sort(triggered.begin(), triggered.end());
        return triggered;
    };
    const auto sorted = [](std::vector<EntityId> entities) {
        std::sort(entities.begin(), entities.end());
        return entities;
    };

    EXPECT_EQ(wait_sorted(Status::timeout), sorted({}));
    ASSERT_EQ(write_note(writer, 1, "text"), Status::ok);
    EXPECT_EQ(wait_sorted(Status::ok), sorted({unread, reader}));
    ASSERT_EQ(set_guard_condition(guard, true), Status::ok);
    EXPECT_EQ(wait_sorted(Status::ok), sorted({unread, reader, guard}));
    std::vector<Sample> samples;
    ASSERT_EQ(read_or_take(reader, Access::read, {}, unlimited, samples), Status::ok);
    EXPECT_EQ(wait_sorted(Status::ok), sorted({guard}));
    EXPECT_TRUE(is_triggered(guard));
    ASSERT_EQ(set_guard_condition(guard, false), Status::ok);
    EXPECT_FALSE(is_triggered(guard));
    ASSERT_EQ(dispose_note(writer, 1), Status::ok);
    EXPECT_EQ(wait_sorted(Status::ok), sorted({disposed, unread, reader}));
    ASSERT_EQ(detach(wait_set, unread), Status::ok);
    ASSERT_EQ(detach(wait_set, reader), Status::ok);
    EXPECT_EQ(wait_sorted(Status::ok), sorted({disposed}));
    ASSERT_EQ(delete_entity(reader), Status::ok);
    EXPECT_EQ(wait_sorted(Status::timeout), sorted({}));

    EXPECT_EQ(delete_entity(guard), Status::ok);
    EXPECT_EQ(delete_entity(wait_set), Status::ok);
}

TEST(WaitSet, WakesAWaitingThread) {
    const EntityId guard = create_guard_condition().entity;
    const EntityId wait_set = create_wait_set().entity;
    ASSERT_EQ(attach(wait_set, guard), Status::ok);
    auto woken = std::async(std::launch::async, [wait_set] {
        std::vector<EntityId> triggered;
        EXPECT_EQ(wait(wait_set, infinite, triggered), Status::ok);
        return triggered;
    });
    EXPECT_EQ(woken.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
    EXPECT_EQ(set_guard_condition(guard, true), Status::ok);
    EXPECT_EQ(woken.get(), std::vector<EntityId>{guard});
    EXPECT_EQ(delete_entity(wait_set), Status::ok);
    EXPECT_EQ(delete_entity(guard), Status::ok);
}

TEST(WaitSet, TimesOut) {
    const EntityId guard = create_guard_condition().entity;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(await(guard, 30 * millisecond), Status::timeout);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(30));
    EXPECT_EQ(delete_entity(guard), Status::ok);
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

}  // namespace
}  // namespace pexa::engine

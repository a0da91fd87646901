#include <gtest/gtest.h>

#include "tests/platform/engine/node.hpp"

namespace pexa::engine {
namespace {

// Waits for a status to change, and reads it.
template <typename S>
S await_status(EntityId entity, StatusMask bit) {
    EXPECT_EQ(set_status_condition(entity, bit), Status::ok);
    EXPECT_EQ(await(entity), Status::ok);
    EXPECT_NE(status_changes(entity) & bit, 0U);
    S status;
    EXPECT_EQ(get_status(entity, status), Status::ok);
    EXPECT_EQ(status_changes(entity) & bit, 0U);
    return status;
}

TEST(StatusOf, AFullReaderNamesTheLimit) {
    struct Case {
        ResourceLimitsPolicy limits;
        RejectedReason reason;
    };
    const Case cases[] = {
        {{1, unlimited, unlimited}, RejectedReason::samples_limit},
        {{unlimited, 1, unlimited}, RejectedReason::instances_limit},
        {{unlimited, unlimited, 1}, RejectedReason::samples_per_instance_limit},
    };
    for (const Case& testcase : cases) {
        SCOPED_TRACE(static_cast<int>(testcase.reason));
        const Node node;
        Qos qos = keep_everything();
        qos.resource_limits = testcase.limits;
        const EntityId reader = node.reader(qos);
        qos.resource_limits.reset();
        qos.reliability->max_blocking_time = millisecond;
        const EntityId writer = node.writer(qos);
        ASSERT_EQ(write_note(writer, 1, "fits"), Status::ok);
        const std::uint32_t second =
            testcase.reason == RejectedReason::samples_per_instance_limit ? 1 : 2;
        ASSERT_EQ(write_note(writer, second, "does not"), Status::timeout);
        const auto rejected = await_status<SampleRejected>(reader, sample_rejected_status);
        EXPECT_EQ(rejected.last_reason, testcase.reason);
        EXPECT_GE(rejected.total_count, 1);
    }
}

TEST(StatusOf, ALostWriterIsOneThatIsNotAlive) {
    const Node node;
    Qos qos = keep_everything();
    qos.liveliness = LivelinessPolicy{LivelinessKind::manual_by_topic, 30 * millisecond};
    const EntityId reader = node.reader(qos);
    const EntityId writer = node.writer(qos);
    LocalHandle handle = 0;
    ASSERT_EQ(get_local_handle(writer, handle), Status::ok);
    ASSERT_EQ(assert_liveliness(writer), Status::ok);

    EXPECT_EQ(await_status<LivelinessLost>(writer, liveliness_lost_status).total_count, 1);
    LivelinessChanged changed;
    while (changed.not_alive_count == 0) {
        changed = await_status<LivelinessChanged>(reader, liveliness_changed_status);
    }
    EXPECT_EQ(changed.alive_count, 0);
    EXPECT_EQ(changed.last_publication, handle);

    ASSERT_EQ(write_note(writer, 1, "alive again"), Status::ok);
    changed = await_status<LivelinessChanged>(reader, liveliness_changed_status);
    EXPECT_EQ(changed.alive_count_change + changed.not_alive_count_change, 0);
}

}  // namespace
}  // namespace pexa::engine

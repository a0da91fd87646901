#include <gtest/gtest.h>

#include "tests/platform/engine/node.hpp"

namespace pexa::engine {
namespace {

TEST(CommunicationStatusOf, AFullReaderNamesTheLimit) {
    const struct {
        ResourceLimitsPolicy limits;
        std::uint32_t second_instance;
        RejectedReason reason;
    } cases[] = {
        {{1, unlimited, unlimited}, 2, RejectedReason::samples_limit},
        {{unlimited, 1, unlimited}, 2, RejectedReason::instances_limit},
        {{unlimited, unlimited, 1}, 1, RejectedReason::samples_per_instance_limit},
    };
    for (const auto& [limits, second_instance, reason] : cases) {
        SCOPED_TRACE(static_cast<int>(reason));
        const Node node;
        Qos qos = keep_everything();
        qos.reliability->max_blocking_time = millisecond;
        const EntityId writer = node.writer(qos);
        qos.resource_limits = limits;
        const EntityId reader = node.reader(qos);
        ASSERT_EQ(write_note(writer, 1, "fits"), Status::ok);
        ASSERT_EQ(write_note(writer, second_instance, "does not"), Status::timeout);
        EXPECT_EQ(await_status(reader, sample_rejected_status).last_reason, reason);
    }
}

TEST(CommunicationStatusOf, ALostWriterIsOneThatIsNotAlive) {
    const Node node;
    Qos qos = keep_everything();
    qos.liveliness = LivelinessPolicy{LivelinessKind::manual_by_topic, 30 * millisecond};
    const EntityId reader = node.reader(qos);
    const EntityId writer = node.writer(qos);
    LocalHandle handle = 0;
    ASSERT_EQ(get_local_handle(writer, handle), Status::ok);
    ASSERT_EQ(assert_liveliness(writer), Status::ok);

    EXPECT_EQ(await_status(writer, liveliness_lost_status).total_count, 1);
    CommunicationStatus changed;
    while (changed.not_alive_count == 0) {
        changed = await_status(reader, liveliness_changed_status);
    }
    EXPECT_EQ(changed.alive_count, 0);
    EXPECT_EQ(changed.last_peer, handle);

    ASSERT_EQ(write_note(writer, 1, "alive again"), Status::ok);
    changed = await_status(reader, liveliness_changed_status);
    EXPECT_EQ(changed.alive_count_change + changed.not_alive_count_change, 0);
}

}  // namespace
}  // namespace pexa::engine

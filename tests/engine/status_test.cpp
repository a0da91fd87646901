#include <gtest/gtest.h>

#include "tests/engine/node.hpp"

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

TEST(StatusOf, EndpointsThatDoNotAgreeNamesThePolicyOnBothSides) {
    struct Case {
        const char* what;
        int policy;
        void (*offer)(Qos&);
        void (*request)(Qos&);
    };
    const Case cases[] = {
        {"durability", 2, [](Qos& qos) { qos.durability = DurabilityKind::volatile_data; },
         [](Qos&) {}},
        {"reliability", 11,
         [](Qos& qos) {
             qos.reliability = ReliabilityPolicy{ReliabilityKind::best_effort, 0};
         },
         [](Qos&) {}},
        {"deadline", 4, [](Qos& qos) { qos.deadline = 2 * millisecond; },
         [](Qos& qos) { qos.deadline = millisecond; }},
        {"ownership", 6, [](Qos& qos) { qos.ownership = OwnershipKind::shared; },
         [](Qos& qos) { qos.ownership = OwnershipKind::exclusive; }},
    };
    for (const Case& testcase : cases) {
        SCOPED_TRACE(testcase.what);
        const Node node;
        Qos offered = keep_everything();
        Qos requested = keep_everything();
        testcase.offer(offered);
        testcase.request(requested);
        const EntityId writer = node.writer(offered);
        const EntityId reader = node.reader(requested);
        const auto by_writer =
            await_status<OfferedIncompatibleQos>(writer, offered_incompatible_qos_status);
        const auto by_reader =
            await_status<RequestedIncompatibleQos>(reader, requested_incompatible_qos_status);
        EXPECT_EQ(by_writer.total_count_change, 1);
        EXPECT_EQ(by_writer.last_policy_id, testcase.policy);
        EXPECT_EQ(by_reader.total_count, 1);
        EXPECT_EQ(by_reader.last_policy_id, testcase.policy);
        std::vector<LocalHandle> matched;
        EXPECT_EQ(get_matched_publications(reader, matched), Status::ok);
        EXPECT_TRUE(matched.empty());
    }
}

TEST(StatusOf, AMissedDeadlineIsToldToBothSides) {
    const Node node;
    Qos qos = keep_everything();
    qos.deadline = 20 * millisecond;
    const EntityId writer = node.writer(qos);
    const EntityId reader = node.reader(qos);
    ASSERT_EQ(write_note(writer, 1, "only once"), Status::ok);
    EXPECT_GE(
        await_status<OfferedDeadlineMissed>(writer, offered_deadline_missed_status).total_count, 1);
    EXPECT_GE(
        await_status<RequestedDeadlineMissed>(reader, requested_deadline_missed_status).total_count,
        1);
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

}  // namespace
}  // namespace pexa::engine

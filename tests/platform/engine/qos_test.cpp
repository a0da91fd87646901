#include <gtest/gtest.h>

#include "platform/engine/cyclone/qos_conversion.hpp"
#include "tests/platform/engine/node.hpp"

namespace pexa::engine {
namespace {

Qos every_policy() {
    Qos qos;
    qos.user_data = Bytes{std::byte{1}, std::byte{0}};
    qos.topic_data = Bytes{std::byte{2}};
    qos.group_data = Bytes{};
    qos.entity_name = "name";
    qos.properties = {{"first", "1"}, {"second", ""}};
    qos.durability = DurabilityKind::transient;
    qos.durability_service = {
        5 * millisecond, {HistoryKind::keep_last, 6}, ResourceLimitsPolicy{30, 20, 10}};
    qos.presentation = {AccessScope::topic, true, true};
    qos.deadline = 7 * millisecond;
    qos.latency_budget = 8 * millisecond;
    qos.ownership = OwnershipKind::exclusive;
    qos.ownership_strength = -9;
    qos.liveliness = {LivelinessKind::manual_by_participant, 10 * millisecond};
    qos.time_based_filter = 1 * millisecond;
    qos.partition = {"a", "b*", ""};
    qos.reliability = {ReliabilityKind::reliable, infinite};
    qos.transport_priority = 11;
    qos.lifespan = 12 * millisecond;
    qos.destination_order = DestinationOrderKind::by_source_timestamp;
    qos.history = {HistoryKind::keep_last, 13};
    qos.resource_limits = {16, 15, 14};
    qos.autodispose_unregistered_instances = false;
    qos.reader_data_lifecycle = {17 * millisecond, 18 * millisecond};
    qos.ignore_local = IgnoreLocalKind::same_process;
    return qos;
}

TEST(QosConversion, KeepsEveryPolicyAndAddsNone) {
    EXPECT_EQ(cyclone::from_engine(cyclone::to_engine(every_policy()).get()), every_policy());
    EXPECT_EQ(cyclone::from_engine(cyclone::to_engine({}).get()), Qos{});
    // One at a time, so that no policy can stand in for another.
    const Qos all = every_policy();
    const auto alone = [&all](auto member) {
        Qos one;
        one.*member = all.*member;
        EXPECT_EQ(cyclone::from_engine(cyclone::to_engine(one).get()), one);
    };
    const auto each_alone = [&](auto... members) { (alone(members), ...); };
    each_alone(&Qos::user_data, &Qos::topic_data, &Qos::group_data, &Qos::entity_name,
               &Qos::properties, &Qos::durability, &Qos::durability_service, &Qos::presentation,
               &Qos::deadline, &Qos::latency_budget, &Qos::ownership, &Qos::ownership_strength,
               &Qos::liveliness, &Qos::time_based_filter, &Qos::partition, &Qos::reliability,
               &Qos::transport_priority, &Qos::lifespan, &Qos::destination_order, &Qos::history,
               &Qos::resource_limits, &Qos::autodispose_unregistered_instances,
               &Qos::reader_data_lifecycle, &Qos::ignore_local);
}

TEST(QosConversion, ReachesEachKindOfEntity) {
    const Node node;
    Qos qos;
    const auto expect_kept = [&qos](const char* what, Created entity, auto... members) {
        SCOPED_TRACE(what);
        ASSERT_EQ(entity.status, Status::ok);
        Qos found;
        ASSERT_EQ(get_qos(entity.entity, found), Status::ok);
        const auto compare = [&](auto member) { EXPECT_EQ(found.*member, qos.*member); };
        (compare(members), ...);
    };
    qos = every_policy();
    qos.durability = DurabilityKind::transient_local;
    qos.liveliness->kind = LivelinessKind::automatic;
    const Created participant = create_participant(ORVANE_TEST_DOMAIN, qos);
    expect_kept("participant", participant, &Qos::user_data, &Qos::entity_name, &Qos::properties,
                &Qos::liveliness);
    EXPECT_EQ(delete_entity(participant.entity), Status::ok);
    expect_kept("topic",
                create_topic(node.participant, "qos/topic", std::make_shared<NoteType>(), qos),
                &Qos::topic_data, &Qos::durability, &Qos::deadline, &Qos::history, &Qos::lifespan);
    qos.presentation = PresentationPolicy{};
    const Created publisher = create_publisher(node.participant, qos);
    expect_kept("publisher", publisher, &Qos::partition, &Qos::group_data, &Qos::presentation);
    expect_kept("reader", create_reader(node.subscriber, node.topic, qos), &Qos::user_data,
                &Qos::reliability, &Qos::history, &Qos::resource_limits,
                &Qos::reader_data_lifecycle, &Qos::time_based_filter, &Qos::liveliness,
                &Qos::ignore_local);
    qos.lifespan = infinite;
    const Created writer = create_writer(publisher.entity, node.topic, qos);
    qos.durability_service = {5 * millisecond, *qos.history, *qos.resource_limits};
    expect_kept("writer", writer, &Qos::user_data, &Qos::reliability, &Qos::history,
                &Qos::transport_priority, &Qos::ownership_strength,
                &Qos::autodispose_unregistered_instances, &Qos::durability_service);
}

}  // namespace
}  // namespace pexa::engine

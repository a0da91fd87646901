#include "platform/dds/profiles/fields.hpp"
#include "tests/platform/dds/profiles/profile_files.hpp"

namespace {

using pexa::dds::OwnedQos;
using pexa::dds::policies_of;

class ProfilePolicies : public ProfileFiles {};

bool is(const DDS_Duration_t& duration, DDS_Long sec, DDS_UnsignedLong nanosec) {
    return duration.sec == sec && duration.nanosec == nanosec;
}

bool is_infinite(const DDS_Duration_t& duration) {
    return is(duration, DDS_DURATION_INFINITE_SEC, DDS_DURATION_INFINITE_NSEC);
}

std::vector<int> bytes(const DDS_OctetSeq& octets) {
    return {octets.contiguousBuffer, octets.contiguousBuffer + octets.length};
}
const std::vector<int> data_bytes{0x00, 0xff, 'a', 'a'};

template <typename Qos>
void expect_shared(const Qos& qos) {
    EXPECT_EQ(qos.durability.kind, DDS_TRANSIENT_LOCAL_DURABILITY_QOS);
    EXPECT_TRUE(is(qos.deadline.period, 3, 4));
    EXPECT_TRUE(is(qos.latency_budget.duration, 0, 5));
    EXPECT_EQ(qos.ownership.kind, DDS_EXCLUSIVE_OWNERSHIP_QOS);
    EXPECT_EQ(qos.liveliness.kind, DDS_MANUAL_BY_TOPIC_LIVELINESS_QOS);
    EXPECT_TRUE(is(qos.liveliness.lease_duration, 6, 0));
    EXPECT_EQ(qos.reliability.kind, DDS_RELIABLE_RELIABILITY_QOS);
    EXPECT_TRUE(is_infinite(qos.reliability.max_blocking_time));
    EXPECT_EQ(qos.destination_order.kind, DDS_BY_SOURCE_TIMESTAMP_DESTINATIONORDER_QOS);
    EXPECT_EQ(qos.history.kind, DDS_KEEP_ALL_HISTORY_QOS);
    EXPECT_EQ(qos.history.depth, 7);
    EXPECT_EQ(qos.resource_limits.max_samples, 90);
    EXPECT_EQ(qos.resource_limits.max_instances, 10);
    EXPECT_EQ(qos.resource_limits.max_samples_per_instance, 8);
}

template <typename Qos>
void expect_sending(const Qos& qos) {
    const DDS_DurabilityServiceQosPolicy& service = qos.durability_service;
    EXPECT_TRUE(is(service.service_cleanup_delay, 1, 0));
    EXPECT_EQ(service.history_kind, DDS_KEEP_ALL_HISTORY_QOS);
    EXPECT_EQ(service.history_depth, 11);
    EXPECT_EQ(service.max_samples, 30);
    EXPECT_EQ(service.max_instances, 12);
    EXPECT_EQ(service.max_samples_per_instance, 13);
    EXPECT_EQ(qos.transport_priority.value, -9);
    EXPECT_TRUE(is(qos.lifespan.duration, 7, 0));
}

template <typename Qos>
void expect_group(const Qos& qos) {
    EXPECT_EQ(qos.presentation.access_scope, DDS_TOPIC_PRESENTATION_QOS);
    EXPECT_EQ(qos.presentation.coherent_access, 1);
    EXPECT_EQ(qos.presentation.ordered_access, 1);
    ASSERT_EQ(qos.partition.name.length, 2);
    EXPECT_STREQ(qos.partition.name.contiguousBuffer[1], "south-*");
    EXPECT_EQ(bytes(qos.group_data.value), data_bytes);
    EXPECT_EQ(qos.entity_factory.autoenable_created_entities, 0);
}

TEST_F(ProfilePolicies, OfTheExampleAreReadForEveryKindOfEntity) {
    ASSERT_EQ(DDS_DomainParticipantFactory_load_qos_profiles(
                  factory(), ORVANE_SOURCE_DIR "/docs/qos-profiles-example.xml"),
              DDS_RETCODE_OK);
    const char* library = "Example";
    const char* profile = "Complete";
    OwnedQos<DDS_DomainParticipantQos> participant;
    OwnedQos<DDS_TopicQos> topic;
    OwnedQos<DDS_PublisherQos> publisher;
    OwnedQos<DDS_SubscriberQos> subscriber;
    WriterQos writer;
    OwnedQos<DDS_DataReaderQos> reader;
    const DDS_ReturnCode_t results[] = {
        DDS_DomainParticipantFactory_get_participant_qos_from_profile(factory(), &participant.get(),
                                                                      library, profile),
        DDS_DomainParticipantFactory_get_topic_qos_from_profile_w_topic_name(
            factory(), &topic.get(), library, profile, nullptr),
        DDS_DomainParticipantFactory_get_publisher_qos_from_profile(factory(), &publisher.get(),
                                                                    library, profile),
        DDS_DomainParticipantFactory_get_subscriber_qos_from_profile(factory(), &subscriber.get(),
                                                                     library, profile),
        DDS_DomainParticipantFactory_get_datawriter_qos_from_profile_w_topic_name(
            factory(), &writer.get(), library, profile, nullptr),
        DDS_DomainParticipantFactory_get_datareader_qos_from_profile_w_topic_name(
            factory(), &reader.get(), library, profile, nullptr),
    };
    for (const DDS_ReturnCode_t result : results) {
        ASSERT_EQ(result, DDS_RETCODE_OK);
    }
    EXPECT_EQ(bytes(participant.get().user_data.value), data_bytes);
    EXPECT_EQ(participant.get().entity_factory.autoenable_created_entities, 0);
    EXPECT_STREQ(participant.get().participant_name.name, "navigation");
    const DDS_PropertySeq& properties = participant.get().property.value;
    ASSERT_EQ(properties.length, 2);
    EXPECT_STREQ(properties.contiguousBuffer[1].name, "second");
    EXPECT_STREQ(properties.contiguousBuffer[1].value, "2");
    expect_shared(topic.get());
    expect_sending(topic.get());
    EXPECT_EQ(bytes(topic.get().topic_data.value), data_bytes);
    expect_group(publisher.get());
    expect_group(subscriber.get());
    expect_shared(writer.get());
    expect_sending(writer.get());
    EXPECT_EQ(bytes(writer.get().user_data.value), data_bytes);
    EXPECT_EQ(writer.get().ownership_strength.value, 5);
    EXPECT_EQ(writer.get().writer_data_lifecycle.autodispose_unregistered_instances, 0);
    EXPECT_EQ(writer.get().batch.enable, 1);
    expect_shared(reader.get());
    EXPECT_EQ(bytes(reader.get().user_data.value), data_bytes);
    EXPECT_TRUE(is(reader.get().time_based_filter.minimum_separation, 2, 0));
    const auto& lifecycle = reader.get().reader_data_lifecycle;
    EXPECT_TRUE(is(lifecycle.autopurge_nowriter_samples_delay, 4, 0));
    EXPECT_TRUE(is(lifecycle.autopurge_disposed_samples_delay, 5, 0));
}

template <typename Record>
void expect_fields(const std::string& exception = "") {
    for (const auto& row : policies_of<Record>().rows) {
        EXPECT_EQ(pexa::dds::fields_of(row.name).empty(), row.name == exception) << row.name;
    }
}

TEST(ProfileFields, CoverEveryPolicyButThoseThatThePortFillsIn) {
    expect_fields<DDS_DomainParticipantQos>("wire_protocol");
    expect_fields<DDS_TopicQos>();
    expect_fields<DDS_PublisherQos>();
    expect_fields<DDS_SubscriberQos>();
    expect_fields<DDS_DataWriterQos>();
    expect_fields<DDS_DataReaderQos>();
}

/// @return a document in which one value of a writer's policy is this text
std::string with_value(const std::string& policy, const std::string& field,
                       const std::string& value) {
    return "<dds><qos_library name=\"L\"><qos_profile name=\"P\"><datawriter_qos><" + policy +
           "><" + field + ">" + value + "</" + field + "></" + policy +
           "></datawriter_qos></qos_profile></qos_library></dds>";
}

TEST_F(ProfilePolicies, EnumeratorsMayLackPrefixAndSuffix) {
    using Number = int (*)(const DDS_DataWriterQos&);
    const struct {
        const char* policy;
        const char* suffix;
        std::vector<std::string> names;
        Number number;
    } kinds[] = {
        {"durability",
         "_DURABILITY_QOS",
         {"VOLATILE", "TRANSIENT_LOCAL", "TRANSIENT", "PERSISTENT"},
         [](const DDS_DataWriterQos& qos) { return int{qos.durability.kind}; }},
        {"history",
         "_HISTORY_QOS",
         {"KEEP_LAST", "KEEP_ALL"},
         [](const DDS_DataWriterQos& qos) { return int{qos.history.kind}; }},
        {"reliability",
         "_RELIABILITY_QOS",
         {"BEST_EFFORT", "RELIABLE"},
         [](const DDS_DataWriterQos& qos) { return int{qos.reliability.kind}; }},
        {"ownership",
         "_OWNERSHIP_QOS",
         {"SHARED", "EXCLUSIVE"},
         [](const DDS_DataWriterQos& qos) { return int{qos.ownership.kind}; }},
        {"liveliness",
         "_LIVELINESS_QOS",
         {"AUTOMATIC", "MANUAL_BY_PARTICIPANT", "MANUAL_BY_TOPIC"},
         [](const DDS_DataWriterQos& qos) { return int{qos.liveliness.kind}; }},
        {"destination_order",
         "_DESTINATIONORDER_QOS",
         {"BY_RECEPTION_TIMESTAMP", "BY_SOURCE_TIMESTAMP"},
         [](const DDS_DataWriterQos& qos) { return int{qos.destination_order.kind}; }},
    };
    for (const auto& kind : kinds) {
        for (std::size_t number = 0; number < kind.names.size(); ++number) {
            const std::string& name = kind.names[number];
            for (const std::string& text :
                 {name, name + kind.suffix, "DDS_" + name + kind.suffix, "\n " + name + "\n"}) {
                WriterQos qos;
                ASSERT_EQ(load(with_value(kind.policy, "kind", text)), DDS_RETCODE_OK) << text;
                ASSERT_EQ(DDS_DomainParticipantFactory_get_datawriter_qos_from_profile_w_topic_name(
                              factory(), &qos.get(), "L", "P", nullptr),
                          DDS_RETCODE_OK);
                EXPECT_EQ(kind.number(qos.get()), static_cast<int>(number)) << text;
            }
        }
    }
}

TEST_F(ProfilePolicies, DurationsAreNamesOrNumbers) {
    const struct {
        const char* text;
        DDS_Long sec;
        DDS_UnsignedLong nanosec;
    } cases[] = {
        {"DURATION_INFINITY", DDS_DURATION_INFINITE_SEC, DDS_DURATION_INFINITE_NSEC},
        {"<sec>DURATION_INFINITY</sec>", DDS_DURATION_INFINITE_SEC, DDS_DURATION_INFINITE_NSEC},
        {"<sec>DDS_DURATION_INFINITE_SEC</sec><nanosec>DURATION_INFINITE_NSEC</nanosec>",
         DDS_DURATION_INFINITE_SEC, DDS_DURATION_INFINITE_NSEC},
        {"<nanosec>2147483647</nanosec><sec>2147483647</sec>", DDS_DURATION_INFINITE_SEC,
         DDS_DURATION_INFINITE_NSEC},
        {"<sec> 5 </sec>", 5, 0},
        {"<nanosec>999999999</nanosec><sec>2147483646</sec>", 2147483646, 999999999},
    };
    for (const auto& row : cases) {
        WriterQos qos;
        ASSERT_EQ(load(with_value("deadline", "period", row.text)), DDS_RETCODE_OK) << row.text;
        ASSERT_EQ(DDS_DomainParticipantFactory_get_datawriter_qos_from_profile_w_topic_name(
                      factory(), &qos.get(), "L", "P", nullptr),
                  DDS_RETCODE_OK);
        EXPECT_TRUE(is(qos.get().deadline.period, row.sec, row.nanosec)) << row.text;
    }
}

TEST_F(ProfilePolicies, ABadValueIsRefusedWithWhatWasExpected) {
    const struct {
        const char* policy;
        const char* field;
        std::string value;
        const char* expected;
    } cases[] = {
        {"durability", "kind", "LOCAL",
         "kind: expected VOLATILE_DURABILITY_QOS TRANSIENT_LOCAL_DURABILITY_QOS "
         "TRANSIENT_DURABILITY_QOS PERSISTENT_DURABILITY_QOS"},
        {"durability", "kind", "", "kind: expected VOLATILE"},
        {"durability", "kind", "volatile", "kind: expected VOLATILE"},
        {"durability", "kind", "<x/>", "x: no element expected inside kind"},
        {"durability", "sort", "x", "sort: unknown element, expected kind"},
        {"reliabilty", "kind", "x",
         "reliabilty: unknown element, expected durability durability_service deadline"},
        {"history", "depth", "0", "history: inconsistent policy: depth below 1"},
        {"history", "depth", "2147483648", "depth: expected a number from -2147483648"},
        {"history", "depth", "1x", "depth: expected a number"},
        {"resource_limits", "max_samples", "0", "max_samples: expected a number from 1 to"},
        {"resource_limits", "max_samples", "UNLIMITED",
         "max_samples: expected a number from 1 to 2147483647 or LENGTH_UNLIMITED"},
        {"deadline", "period", "", "period: expected sec, nanosec or DURATION_INFINITY"},
        {"deadline", "period", "5", "period: expected sec, nanosec or DURATION_INFINITY"},
        {"deadline", "period", "<sec>-1</sec>", "sec: expected a number from 0 to 2147483647"},
        {"deadline", "period", "<nanosec>1000000000</nanosec>",
         "nanosec: expected a number from 0 to 999999999"},
        {"deadline", "period", "<sec>1</sec><nanosec>DURATION_INFINITY</nanosec>",
         "period: expected sec to be infinite too"},
        {"deadline", "period", "<sec>1</sec><sec>2</sec>", "sec: expected once only inside period"},
        {"deadline", "period", "<sec>1</sec>x", "period: no text expected beside the elements"},
        {"user_data", "value", "AP9", "value: expected bytes in base64"},
        {"user_data", "value", "A===", "value: expected bytes in base64"},
        {"user_data", "value", "AP=h", "value: expected bytes in base64"},
        {"user_data", "value", "AP-h", "value: expected bytes in base64"},
        {"writer_data_lifecycle", "autodispose_unregistered_instances", "2",
         "autodispose_unregistered_instances: expected true, false, yes, no, 1 or 0"},
    };
    Reports reports;
    for (const auto& row : cases) {
        EXPECT_EQ(load(with_value(row.policy, row.field, row.value)), DDS_RETCODE_ERROR);
        EXPECT_TRUE(has_line(reports.take(), std::string(":loaded.xml:1: ") + row.expected))
            << row.expected;
        EXPECT_TRUE(profiles_of("L").empty());
    }
}

}  // namespace

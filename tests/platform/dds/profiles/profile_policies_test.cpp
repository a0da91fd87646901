#include "platform/dds/qos/duration.hpp"
#include "tests/platform/dds/profiles/profile_files.hpp"
#include "tests/platform/engine/every_policy.hpp"

namespace {

namespace engine = pexa::engine;
using pexa::dds::OwnedQos;

class ProfilePolicies : public ProfileFiles {};

constexpr engine::Nanoseconds second = 1'000'000'000;

/// Compares the record that @p get fills from a profile with the example.
template <typename Record, typename... Topic>
void expect_example(DDS_ReturnCode_t (*get)(DDS_DomainParticipantFactory*, Record*, const char*,
                                            const char*, Topic...),
                    Topic... topic) {
    OwnedQos<Record> qos;
    ASSERT_EQ(get(DDS_DomainParticipantFactory_get_instance(), &qos.get(), "Example", "Complete",
                  topic...),
              DDS_RETCODE_OK);
    OwnedQos<Record> expected;
    ASSERT_EQ(pexa::dds::from_engine(engine::every_policy(), expected.get()), pexa::Status::ok);
    if constexpr (requires { expected.get().entity_factory; }) {
        expected.get().entity_factory.autoenable_created_entities = 0;
    }
    EXPECT_TRUE(pexa::dds::equal_qos(qos.get(), expected.get()));
}

TEST_F(ProfilePolicies, OfTheExampleAreReadForEveryKindOfEntity) {
    ASSERT_EQ(DDS_DomainParticipantFactory_load_qos_profiles(
                  factory(), ORVANE_SOURCE_DIR "/docs/qos-profiles-example.xml"),
              DDS_RETCODE_OK);
    expect_example(DDS_DomainParticipantFactory_get_participant_qos_from_profile);
    expect_example(DDS_DomainParticipantFactory_get_publisher_qos_from_profile);
    expect_example(DDS_DomainParticipantFactory_get_subscriber_qos_from_profile);
    const char* no_topic = nullptr;
    expect_example(DDS_DomainParticipantFactory_get_topic_qos_from_profile_w_topic_name, no_topic);
    expect_example(DDS_DomainParticipantFactory_get_datawriter_qos_from_profile_w_topic_name,
                   no_topic);
    expect_example(DDS_DomainParticipantFactory_get_datareader_qos_from_profile_w_topic_name,
                   no_topic);
}

/// @return a profile in which one value of a writer's policy is this text
std::string profile_with(const std::string& name, const std::string& policy,
                         const std::string& field, const std::string& value) {
    return "<qos_profile name='" + name + "'><datawriter_qos><" + policy + "><" + field + ">" +
           value + "</" + field + "></" + policy + "></datawriter_qos></qos_profile>";
}

TEST_F(ProfilePolicies, EnumeratorsMayLackPrefixAndSuffix) {
    const struct {
        const char* policy;
        const char* name;
        const char* suffix;
    } kinds[] = {
        {"durability", "PERSISTENT", "_DURABILITY_QOS"},
        {"history", "KEEP_ALL", "_HISTORY_QOS"},
        {"reliability", "BEST_EFFORT", "_RELIABILITY_QOS"},
        {"ownership", "EXCLUSIVE", "_OWNERSHIP_QOS"},
        {"liveliness", "MANUAL_BY_PARTICIPANT", "_LIVELINESS_QOS"},
        {"destination_order", "BY_SOURCE_TIMESTAMP", "_DESTINATIONORDER_QOS"},
    };
    for (const auto& [policy, name, suffix] : kinds) {
        const std::string full = std::string(name) + suffix;
        const WriterQos standard;
        WriterQos expected;
        ASSERT_EQ(load(library(profile_with("P", policy, "kind", full))), DDS_RETCODE_OK);
        ASSERT_EQ(fill(expected.get(), "P"), DDS_RETCODE_OK);
        EXPECT_FALSE(pexa::dds::equal_qos(expected.get(), standard.get())) << name;
        for (const std::string& form : {std::string("\n ") + name, "DDS_" + full}) {
            WriterQos qos;
            ASSERT_EQ(load(library(profile_with("P", policy, "kind", form))), DDS_RETCODE_OK);
            ASSERT_EQ(fill(qos.get(), "P"), DDS_RETCODE_OK);
            EXPECT_TRUE(pexa::dds::equal_qos(qos.get(), expected.get())) << form;
        }
    }
}

TEST_F(ProfilePolicies, DurationsAreNamesOrNumbers) {
    const std::pair<const char*, engine::Nanoseconds> cases[] = {
        {"DURATION_INFINITY", engine::infinite},
        {"<sec>DURATION_INFINITY</sec>", engine::infinite},
        {"<sec>DDS_DURATION_INFINITE_SEC</sec><nanosec>DURATION_INFINITE_NSEC</nanosec>",
         engine::infinite},
        {"<sec> 5 </sec>", 5 * second},
        {"<nanosec>999999999</nanosec><sec>2147483646</sec>", 2147483647 * second - 1},
    };
    for (const auto& [text, period] : cases) {
        WriterQos qos;
        ASSERT_EQ(load(library(profile_with("P", "deadline", "period", text))), DDS_RETCODE_OK);
        ASSERT_EQ(fill(qos.get(), "P"), DDS_RETCODE_OK);
        EXPECT_EQ(pexa::dds::to_nanoseconds(qos.get().deadline.period), period) << text;
    }
}

TEST_F(ProfilePolicies, ABadValueIsRefusedWithWhatWasExpected) {
    const struct {
        const char* policy;
        const char* field;
        const char* value;
        const char* expected;
    } cases[] = {
        {"durability", "kind", "volatile",
         "kind: expected VOLATILE_DURABILITY_QOS TRANSIENT_LOCAL_DURABILITY_QOS "
         "TRANSIENT_DURABILITY_QOS PERSISTENT_DURABILITY_QOS"},
        {"durability", "kind", "<x/>", "x: no element expected inside kind"},
        {"durability", "sort", "x", "sort: unknown element, expected kind"},
        {"reliabilty", "kind", "x",
         "reliabilty: unknown element, expected durability durability_service deadline"},
        {"history", "depth", "0",
         "history: datawriter_qos has inconsistent policy history: depth 0 is below 1"},
        {"history", "depth", "2147483648", "depth: expected a number from -2147483648"},
        {"resource_limits", "max_samples", "0",
         "max_samples: expected a number from 1 to 2147483647 or LENGTH_UNLIMITED"},
        {"deadline", "period", "5", "period: expected sec, nanosec or DURATION_INFINITY"},
        {"deadline", "period", "<sec>-1</sec>", "sec: expected a number from 0 to 2147483647"},
        {"deadline", "period", "<nanosec>1000000000</nanosec>",
         "nanosec: expected a number from 0 to 999999999"},
        {"deadline", "period", "<sec>1</sec><nanosec>DURATION_INFINITY</nanosec>",
         "period: expected sec to be infinite too"},
        {"deadline", "period", "<sec>1</sec><sec>2</sec>", "sec: expected once only inside period"},
        {"deadline", "period", "<sec>1</sec>x", "period: no text expected beside the elements"},
        {"user_data", "value", "AP9", "value: expected bytes in base64"},
        {"user_data", "value", "AP=h", "value: expected bytes in base64"},
        {"writer_data_lifecycle", "autodispose_unregistered_instances", "2",
         "autodispose_unregistered_instances: expected true, false, yes, no, 1 or 0"},
    };
    Reports reports;
    for (const auto& row : cases) {
        EXPECT_EQ(load(library(profile_with("P", row.policy, row.field, row.value))),
                  DDS_RETCODE_OK);
        EXPECT_TRUE(has_line(reports.take(), std::string(":loaded.xml:1: ") + row.expected))
            << row.expected;
        EXPECT_EQ(priority_of("P"), -1) << row.expected;
    }
}

}  // namespace

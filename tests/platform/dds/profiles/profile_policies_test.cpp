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

TEST_F(ProfilePolicies, ThatOtherProductsWriteAreAcceptedIfTheyChangeNothing) {
    const auto reader = [](const std::string& policies) {
        return "<datareader_qos>" + policies + "</datareader_qos>";
    };
    const auto property = [](const std::string& propagate) {
        return "<domainparticipant_qos><property><value><element><name>n</name><value>v</value>"
               "<propagate>" +
               propagate + "</propagate></element></value></property></domainparticipant_qos>";
    };
    const auto consistency = [&](const std::string& member, const std::string& value) {
        return reader("<type_consistency><" + member + ">" + value + "</" + member +
                      "></type_consistency>");
    };
    const struct {
        std::string content;
        const char* fault;  ///< NULL for none
    } cases[] = {
        {property("false"), nullptr},
        {property("true"), "element: propagate: expected false: properties are not sent"},
        {reader("<representation><value><element>XCDR_DATA_REPRESENTATION</element></value>"
                "</representation>"),
         nullptr},
        {consistency("kind", "DDS_ALLOW_TYPE_COERCION"), nullptr},
        {consistency("ignore_string_bounds", "1"), nullptr},
        {consistency("kind", "DISALLOW_TYPE_COERCION"),
         "kind: expected ALLOW_TYPE_COERCION: types are not compared, only their names"},
        {consistency("force_type_validation", "true"), "force_type_validation: expected false:"},
        {"<topic_qos><resource_limits><max_samples>0x10</max_samples><initial_samples>8"
         "</initial_samples><initial_instances>1</initial_instances></resource_limits></topic_qos>",
         nullptr},
    };
    Reports reports;
    QELLog_setInstrumentationMask(QEL_LOG_MODULE_DDS, QEL_LOG_BIT(QEL_LOG_LEVEL_ERROR));
    for (const auto& row : cases) {
        ASSERT_EQ(load(library("<qos_profile name='P'>" + row.content + "</qos_profile>")),
                  DDS_RETCODE_OK);
        const auto lines = reports.take();
        EXPECT_EQ(lines.empty(), row.fault == nullptr) << row.content;
        EXPECT_TRUE(row.fault == nullptr || has_line(lines, row.fault)) << row.content;
    }
}

TEST_F(ProfilePolicies, OctetsAreBase64OrNumbers) {
    const std::pair<const char*, const char*> cases[] = {
        {"value>AP9h</value", "00 FF 61 "}, {"valueB64>0x41</valueB64", "D3 1E 35 "},
        {"value>0x41</value", "41 "},       {"value> 84, 0x68\n,255 </value", "54 68 FF "},
        {"value>7</value", "07 "},          {"value>1234</value", "D7 6D F8 "},
    };
    for (const auto& [element, octets] : cases) {
        ASSERT_EQ(
            load(library("<qos_profile name='P'><datawriter_qos><user_data><" +
                         std::string(element) + "></user_data></datawriter_qos></qos_profile>")),
            DDS_RETCODE_OK);
        WriterQos qos;
        ASSERT_EQ(fill(qos.get(), "P"), DDS_RETCODE_OK) << element;
        const DDS_OctetSeq& value = qos.get().user_data.value;
        EXPECT_EQ(orvane::test::hexadecimal(value.contiguousBuffer,
                                            static_cast<std::size_t>(value.length)),
                  octets)
            << element;
    }
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
        {"user_data", "valueB64", "1,2", "valueB64: expected bytes in base64"},
        {"user_data", "value", "1,256", "value: expected bytes in base64"},
        {"resource_limits", "initial_samples", "x", "initial_samples: expected a number"},
        {"representation", "value", "<element>XCDR2_DATA_REPRESENTATION</element>",
         "element: expected XCDR_DATA_REPRESENTATION: samples are encoded in XCDR version 1"},
        {"type_consistency", "kind", "x", "type_consistency: unknown element, expected durability"},
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

#include "tests/platform/dds/profiles/profile_files.hpp"
#include "tests/support/faults.hpp"

namespace {

class ProfileInheritance : public ProfileFiles {};

TEST_F(ProfileInheritance, ADerivedProfileOverridesSingleValues) {
    ASSERT_EQ(load("<dds><qos_library name=\"Base\">" + priority_profile("B", 1) +
                   "</qos_library><qos_library name=\"L\">"
                   "<qos_profile name=\"D\" base_name=\"M\"><datawriter_qos>"
                   "<history><kind>KEEP_ALL</kind></history></datawriter_qos></qos_profile>"
                   "<qos_profile name=\"M\" base_name=\"Base::B\"><datawriter_qos>"
                   "<history><depth>4</depth></history></datawriter_qos></qos_profile>"
                   "</qos_library></dds>"),
              DDS_RETCODE_OK);
    EXPECT_EQ(profiles_of("L"), (Names{"D", "M"}));
    WriterQos qos;
    ASSERT_EQ(fill(qos.get(), "D"), DDS_RETCODE_OK);
    EXPECT_EQ(qos.get().transport_priority.value, 1);
    EXPECT_EQ(qos.get().history.kind, DDS_KEEP_ALL_HISTORY_QOS);
    EXPECT_EQ(qos.get().history.depth, 4);
    EXPECT_EQ(qos.get().reliability.kind, DDS_RELIABLE_RELIABILITY_QOS) << "a writer's default";
    EXPECT_EQ(qos.get().reliability.max_blocking_time.nanosec, 100'000'000U);
    EXPECT_EQ(qos.get().resource_limits.max_samples, DDS_LENGTH_UNLIMITED);
}

TEST_F(ProfileInheritance, PropertiesAreMergedByName) {
    const auto profile = [](const std::string& attributes, const char* first, const char* second) {
        return "<qos_profile " + attributes + "><participant_qos><property><value><element>" +
               first + "</element><element>" + second +
               "</element></value></property></participant_qos></qos_profile>";
    };
    ASSERT_EQ(load(library(profile("name='B'", "<name>a</name><value>1</value>",
                                   "<name>b</name><value>2</value>") +
                           profile("name='D' base_name='B'", "<name>c</name><value>3</value>",
                                   "<name>a</name><value>4</value>"))),
              DDS_RETCODE_OK);
    pexa::dds::OwnedQos<DDS_DomainParticipantQos> qos;
    ASSERT_EQ(DDS_DomainParticipantFactory_get_participant_qos_from_profile(factory(), &qos.get(),
                                                                            "L", "D"),
              DDS_RETCODE_OK);
    std::string pairs;
    for (DDS_Long i = 0; i < qos.get().property.value.length; ++i) {
        const DDS_Property_t& property = qos.get().property.value.contiguousBuffer[i];
        pairs += std::string(property.name) + property.value;
    }
    EXPECT_EQ(pairs, "a4b2c3");
}

TEST_F(ProfileInheritance, TopicFiltersChooseEntries) {
    const auto entry = [](const char* attributes, int priority) {
        return std::string("<datawriter_qos ") + attributes + "><transport_priority><value>" +
               std::to_string(priority) + "</value></transport_priority></datawriter_qos>";
    };
    ASSERT_EQ(load(library("<qos_profile name=\"P\">" + entry("topic_filter='a*'", 2) +
                           entry("", 1) + entry("topic_filter='*/?ta*e'", 3) +
                           "</qos_profile><qos_profile name=\"D\" base_name=\"P\">" +
                           entry("topic_filter='d'", 4) +
                           "</qos_profile>"
                           "<qos_profile name=\"E\" base_name=\"P\">" +
                           entry("", 5) + "</qos_profile>")),
              DDS_RETCODE_OK);
    const struct {
        const char* profile;
        const char* topic;
        DDS_Long priority;
    } cases[] = {
        {"P", nullptr, 1}, {"P", "", 1},  {"P", "A", 1}, {"P", "abc", 2},   {"P", "a/state", 3},
        {"P", "b/ate", 1}, {"D", "d", 4}, {"D", "a", 2}, {"D", nullptr, 1}, {"E", "a", 5},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(priority_of(row.profile, row.topic), row.priority)
            << row.profile << " " << (row.topic != nullptr ? row.topic : "NULL");
    }
}

TEST_F(ProfileInheritance, AFileWithAFaultIsRefusedWithItsLine) {
    std::string chain = priority_profile("P0", 0);
    for (int i = 1; i <= DDS_QOS_PROFILE_MAX_BASES + 1; ++i) {
        chain += priority_profile("P" + std::to_string(i), i,
                                  "base_name=\"P" + std::to_string(i - 1) + "\"");
    }
    std::string list;
    std::string many;
    for (int i = 0; i <= std::max(DDS_QOS_PROFILE_MAX_LIST_LENGTH, DDS_QOS_PROFILE_MAX_COUNT);
         ++i) {
        list += "<element>p</element>";
        many += "<qos_profile name=\"" + std::to_string(i) + "\"/>";
    }
    const struct {
        std::string profiles;
        const char* fault;
    } cases[] = {
        {"\n<qos_profile name='A' base_name='B'/>", "2: qos_profile: unknown base L::B"},
        {"<qos_profile name='A' base_name='A'/>",
         "1: qos_profile: inherits from itself through L::A"},
        {"<qos_profile name='A' base_name='B'/>\n<qos_profile name='B' base_name='A'/>",
         "2: qos_profile: inherits from itself through L::B"},
        {chain, "1: qos_profile: inherits through more than 16 profiles"},
        {many, "1: qos_profile: expected at most 1024 profiles altogether"},
        {"<qos_profile name='A'><publisher_qos>\n<partition><name>" + list +
             "</name></partition></publisher_qos></qos_profile>",
         "2: name: expected at most 1024 elements"},
        {"<qos_profile name='A'/>\n<qos_profile name='A'/>",
         "2: qos_profile: expected a profile of this name once only"},
        {"<qos_profile name='A' is_default_qos='1'/><qos_profile name='B' is_default_qos='1'/>",
         "1: qos_profile: expected one default profile only"},
        {"<qos_profile name='x::y'/>", "1: qos_profile: expected an attribute name"},
        {"<qos_profile name='A' base='B'/>", "1: qos_profile: unknown attribute base, expected"},
        {"<qos_profile name='A'>\n<writer_qos/></qos_profile>",
         "2: writer_qos: unknown element, expected domain_participant_qos participant_qos"},
        {"<qos_profile name='A'><publisher_qos topic_filter='x'/></qos_profile>",
         "1: publisher_qos: unknown attribute topic_filter, expected none"},
        {"<qos_profile name='A'><participant_qos><wire_protocol/></participant_qos></qos_profile>",
         "1: wire_protocol: unknown element, expected user_data entity_factory"},
        {"<qos_profile name='A'><participant_qos><property><value><element><value>1</value>"
         "</element></value></property></participant_qos></qos_profile>",
         "1: element: expected a property with a name"},
    };
    Reports reports;
    for (const auto& row : cases) {
        EXPECT_EQ(load(library("<qos_profile name='Good'/>" + row.profiles)), DDS_RETCODE_ERROR);
        EXPECT_TRUE(has_line(reports.take(), std::string("loaded.xml:") + row.fault)) << row.fault;
        EXPECT_EQ(profiles_of("L"), Names{}) << "not even those without fault: " << row.fault;
    }
}

TEST_F(ProfileInheritance, ALaterFileReplacesProfilesButMayNotMakeACircle) {
    ASSERT_EQ(load(library(priority_profile("A", 1) + "<qos_profile name='B' base_name='A'/>")),
              DDS_RETCODE_OK);
    EXPECT_EQ(priority_of("B"), 1);
    ASSERT_EQ(load(library(priority_profile("A", 2))), DDS_RETCODE_OK);
    EXPECT_EQ(priority_of("B"), 2) << "inherits from what A is now";
    EXPECT_EQ(load(library("<qos_profile name='A' base_name='B'/>")), DDS_RETCODE_ERROR);
    EXPECT_EQ(priority_of("B"), 2) << "as it was";
}

TEST_F(ProfileInheritance, WithoutMemoryNothingIsLoadedAndNothingGiven) {
    const std::string document = library(
        priority_profile("A", 1) +
        "<qos_profile name='B' base_name='A'><participant_qos><property><value><element>"
        "<name>a long name, too long for the string itself</name></element></value></property>"
        "</participant_qos></qos_profile>");
    ASSERT_EQ(load(document), DDS_RETCODE_OK);
    orvane::test::sweep(orvane::test::heap_allocation, [&] {
        pexa::dds::OwnedQos<DDS_DomainParticipantQos> qos;
        return DDS_DomainParticipantFactory_get_participant_qos_from_profile(
                   factory(), &qos.get(), "L", "B") == DDS_RETCODE_OK;
    });
    const Reports silence;
    for (const char* allocation : {orvane::test::heap_allocation, orvane::test::new_expression}) {
        start_again();
        EXPECT_EQ(profiles_of("L"), Names{});
        DDS_ReturnCode_t result = DDS_RETCODE_ERROR;
        for (int call = 1; result != DDS_RETCODE_OK && call < 1000; ++call) {
            {
                const orvane::test::Fault fault(allocation, call);
                result = DDS_DomainParticipantFactory_load_qos_profiles(factory(), "loaded.xml");
                ASSERT_NE(fault.has_struck(), result == DDS_RETCODE_OK) << allocation << call;
            }
            EXPECT_EQ(profiles_of("L").empty(), result != DDS_RETCODE_OK) << allocation << call;
        }
        EXPECT_EQ(result, DDS_RETCODE_OK);
    }
}

}  // namespace

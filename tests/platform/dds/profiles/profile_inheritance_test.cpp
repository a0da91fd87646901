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

TEST_F(ProfileInheritance, AnElementAndAProfileMayHaveSeveralBasesOfEitherKind) {
    const auto priority = [](const std::string& attributes, int value, const char* more = "") {
        return "<datawriter_qos " + attributes + ">" + more + "<transport_priority><value>" +
               std::to_string(value) + "</value></transport_priority></datawriter_qos>";
    };
    const std::string library_of_bases =
        "<qos_library name='B'><qos_profile name='P'>" + priority("name='first'", 1) +
        priority("name='second' topic_filter='x'", 2) +
        "<datawriter_qos><ownership_strength><value>7</value></ownership_strength></datawriter_qos>"
        "</qos_profile>" +
        priority("name='Single'", 3) + "</qos_library>";
    const struct {
        std::string profile;
        DDS_Long priority;
        DDS_Long strength;
    } cases[] = {
        {"<qos_profile name='A'><datawriter_qos base_name='B::P::first'/></qos_profile>", 1, 0},
        {"<qos_profile name='A'><datawriter_qos base_name='B::P::second'/></qos_profile>", 2, 0},
        {"<qos_profile name='A'><datawriter_qos base_name='B::P'/></qos_profile>", 1, 7},
        {"<qos_profile name='A' base_name='B::P,B::Single'/>", 3, 7},
        {"<qos_profile name='A' base_name=' B::Single \n B::P '/>", 1, 7},
        {"<qos_profile name='A'><base_name><element>B::P</element><element>B::Single</element>"
         "</base_name></qos_profile>",
         3, 7},
        {"<qos_profile name='A'><datawriter_qos base_name='B::P'><base_name><element>B::Single"
         "</element></base_name></datawriter_qos></qos_profile>",
         3, 7},
        {"<datawriter_qos name='A' base_name='B::P'/>", 1, 7},
        {"<qos_profile name='A'><datawriter_qos base_name='sibling'/>" +
             priority("name='sibling' topic_filter='y'", 8) + "</qos_profile>",
         8, 0},
        {priority("name='neighbour'", 9) +
             "<qos_profile name='A'><datawriter_qos base_name='neighbour'/></qos_profile>",
         9, 0},
        {"<qos_profile name='N'>" + priority("name='e'", 4) +
             "</qos_profile><qos_profile name='A'><datawriter_qos base_name='N::e'/></qos_profile>",
         4, 0},
        {"<qos_profile name='A' base_name='B::P'>" + priority("base_name='B::Single'", 5) +
             "</qos_profile>",
         5, 7},
        {"<qos_profile name='A'><datareader_qos base_name='B::P'/></qos_profile>", 0, 0},
    };
    for (const auto& row : cases) {
        ASSERT_EQ(load("<dds>" + library_of_bases + "<qos_library name='L'>" + row.profile +
                       "</qos_library></dds>"),
                  DDS_RETCODE_OK);
        WriterQos qos;
        ASSERT_EQ(fill(qos.get(), "A"), DDS_RETCODE_OK) << row.profile;
        EXPECT_EQ(qos.get().transport_priority.value, row.priority) << row.profile;
        EXPECT_EQ(qos.get().ownership_strength.value, row.strength) << row.profile;
    }
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

TEST_F(ProfileInheritance, AProfileWithAFaultIsRefusedWithItsLineAndTheOthersAreLoaded) {
    std::string chain = priority_profile("P0", 0);
    for (int i = 1; i <= DDS_QOS_PROFILE_MAX_BASES; ++i) {
        chain += priority_profile("P" + std::to_string(i), i,
                                  "base_name=\"P" + std::to_string(i - 1) + "\"");
    }
    chain +=
        "<qos_profile name='A' base_name='P" + std::to_string(DDS_QOS_PROFILE_MAX_BASES) + "'/>";
    std::string list;
    for (int i = 0; i <= DDS_QOS_PROFILE_MAX_LIST_LENGTH; ++i) {
        list += "<element>p</element>";
    }
    const struct {
        std::string profiles;
        const char* fault;
    } cases[] = {
        {"\n<qos_profile name='A' base_name='B'/>", "2: qos_profile: unknown base L::B"},
        {"<qos_profile name='A'><topic_qos base_name='A'/></qos_profile>",
         "1: qos_profile: inherits from itself through L::A"},
        {"<qos_profile name='A'>\n<topic_qos name='e' base_name='f'/><topic_qos name='f' "
         "base_name='e'/></qos_profile>",
         "1: qos_profile: inherits from itself through L::f"},
        {"<qos_profile name='A'><topic_qos name='e'/><topic_qos base_name='A::A::e'/>"
         "<publisher_qos base_name='e'/></qos_profile>",
         "1: qos_profile: unknown base A::A::e"},
        {"<qos_profile name='A'><topic_qos name='e'/>\n<topic_qos name='e'/></qos_profile>",
         "2: topic_qos: expected an element of this name once only"},
        {"<qos_profile name='A' base_name=''/>",
         "1: qos_profile: base_name: expected names of the form library::profile"},
        {"<qos_profile name='A'><base_name>\n<element>a::</element></base_name></qos_profile>",
         "2: element: base_name: expected names of the form library::profile"},
        {"<qos_profile name='A' base_name='A'/>",
         "1: qos_profile: inherits from itself through L::A"},
        {"<qos_profile name='B' base_name='A'/>\n<qos_profile name='A' base_name='B'/>",
         "2: qos_profile: its base L::B is refused: loaded.xml:1: qos_profile: inherits from "
         "itself"},
        {"<qos_profile name='A' base_name='B'/>\n<qos_profile name='B'><topic_qos>x</topic_qos>"
         "</qos_profile>",
         "1: qos_profile: its base L::B is refused: loaded.xml:2: topic_qos: no text expected"},
        {chain, "1: qos_profile: has more than 64 bases"},
        {"<qos_profile name='A'><publisher_qos>\n<partition><name>" + list +
             "</name></partition></publisher_qos></qos_profile>",
         "2: name: expected at most 1024 elements"},
        {"<qos_profile name='A'/>\n<qos_profile name='A'/>",
         "2: qos_profile: expected a profile of this name once only"},
        {"<qos_profile name='B' is_default_qos='1'/><qos_profile name='A' is_default_qos='1'/>",
         "1: qos_profile: expected one default profile only"},
        {"<qos_profile name='A' base='B'/>", "1: qos_profile: unknown attribute base, expected"},
        {"<qos_profile name='A'>\n<writer_qos/></qos_profile>",
         "2: writer_qos: unknown element, expected domain_participant_qos domainparticipant_qos"},
        {"<qos_profile name='A'><publisher_qos topic_filter='x'/></qos_profile>",
         "1: publisher_qos: unknown attribute topic_filter, expected name base_name"},
        {"<qos_profile name='A'><participant_qos><wire_protocol/></participant_qos></qos_profile>",
         "1: wire_protocol: unknown element, expected user_data entity_factory"},
        {"<qos_profile name='A'><participant_qos><property><value><element><value>1</value>"
         "</element></value></property></participant_qos></qos_profile>",
         "1: element: expected a property with a name"},
    };
    Reports reports;
    for (const auto& row : cases) {
        start_again();
        EXPECT_EQ(load(library("<qos_profile name='Good'/>" + row.profiles)), DDS_RETCODE_OK);
        const std::string fault = std::string("loaded.xml:") + row.fault;
        EXPECT_TRUE(has_line(reports.take(), ":" + fault)) << row.fault;
        WriterQos qos;
        EXPECT_EQ(fill(qos.get(), "Good"), DDS_RETCODE_OK) << row.fault;
        EXPECT_EQ(fill(qos.get(), "A"), DDS_RETCODE_ERROR) << row.fault;
        EXPECT_TRUE(has_line(reports.take(), ":profile L::A is refused: " + fault)) << row.fault;
    }
}

TEST_F(ProfileInheritance, AProfileThatNoEntityCanHaveIsRefusedWithTheValues) {
    const auto writer = [](const std::string& policies) {
        return "<datawriter_qos>" + policies + "</datawriter_qos>";
    };
    const std::string deep = "<history>\n<depth>100</depth></history>";
    const std::string few =
        "<resource_limits><max_samples_per_instance>10</max_samples_per_instance>"
        "</resource_limits>";
    const std::string depth_and_limit =
        "has inconsistent policies: history.depth 100 is above "
        "resource_limits.max_samples_per_instance 10";
    const struct {
        std::string base;
        std::string derived;
        std::string fault;  ///< empty for none
    } cases[] = {
        {"", writer(deep + few), "2: resource_limits: datawriter_qos " + depth_and_limit},
        {writer(few), "\n" + writer(deep), "2: history: datawriter_qos " + depth_and_limit},
        {writer(deep), "<datawriter_qos topic_filter='fast/*'>" + few + "</datawriter_qos>",
         "2: resource_limits: datawriter_qos with topic_filter fast/* " + depth_and_limit},
        {"<datawriter_qos topic_filter='?'>" + few + "</datawriter_qos>", writer(deep),
         "1: history: datawriter_qos with topic_filter ? " + depth_and_limit},
        {"<topic_qos>" + few + "</topic_qos>", "<topic_qos>" + deep + "</topic_qos>",
         "1: history: topic_qos " + depth_and_limit},
        {"<datareader_qos><time_based_filter><minimum_separation><sec>2</sec></minimum_separation>"
         "</time_based_filter></datareader_qos>",
         "\n<datareader_qos><deadline><period><sec>1</sec><nanosec>5</nanosec></period></deadline>"
         "</datareader_qos>",
         "2: deadline: datareader_qos has inconsistent policies: deadline.period 1.000000005 s is "
         "below time_based_filter.minimum_separation 2 s"},
        {writer("<resource_limits><max_samples_per_instance>5</max_samples_per_instance>"
                "</resource_limits>"),
         writer("<resource_limits><max_samples>4</max_samples></resource_limits>"),
         "1: resource_limits: datawriter_qos has inconsistent policy resource_limits: max_samples "
         "4 is below max_samples_per_instance 5"},
        // What each part lacks the other has.
        {writer(few),
         writer(deep + "<resource_limits><max_samples_per_instance>100"
                       "</max_samples_per_instance></resource_limits>"),
         ""},
        {writer("<history><kind>KEEP_ALL</kind></history>"),
         writer("<history><depth>0</depth></history>"), ""},
        {writer(few), "<datareader_qos>" + deep + "</datareader_qos>", ""},
    };
    for (const auto& row : cases) {
        start_again();
        Reports reports;
        EXPECT_EQ(load(library("<qos_profile name='B'>" + row.base +
                               "</qos_profile><qos_profile name='A' base_name='B'>" + row.derived +
                               "</qos_profile>")),
                  DDS_RETCODE_OK);
        const auto lines = reports.take();
        EXPECT_EQ(has_line(lines, "inconsistent"), !row.fault.empty()) << row.fault;
        EXPECT_TRUE(row.fault.empty() || has_line(lines, ":loaded.xml:" + row.fault)) << row.fault;
        WriterQos qos;
        EXPECT_EQ(fill(qos.get(), "A") == DDS_RETCODE_OK, row.fault.empty()) << row.fault;
        EXPECT_EQ(fill(qos.get(), "B"), DDS_RETCODE_OK) << row.fault;
    }
}

TEST_F(ProfileInheritance, ALaterFileReplacesProfilesAlsoByRefusedOnes) {
    ASSERT_EQ(load(library(priority_profile("A", 1) + "<qos_profile name='B' base_name='A'/>")),
              DDS_RETCODE_OK);
    EXPECT_EQ(priority_of("B"), 1);
    ASSERT_EQ(load(library(priority_profile("A", 2))), DDS_RETCODE_OK);
    EXPECT_EQ(priority_of("B"), 2) << "inherits from what A is now";
    ASSERT_EQ(load(library("<qos_profile name='A' base_name='B'/>")), DDS_RETCODE_OK);
    Reports reports;
    EXPECT_EQ(priority_of("B"), -1);
    EXPECT_TRUE(has_line(reports.take(),
                         "L::B is refused: its base L::A is refused: loaded.xml:1: "
                         "qos_profile: inherits from itself through L::A"));
    EXPECT_EQ(profiles_of("L"), (Names{"A", "B"}));
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

#include <atomic>
#include <thread>

#include "tests/platform/dds/profiles/profile_files.hpp"

namespace {

class ProfileSources : public ProfileFiles {};

TEST_F(ProfileSources, AreTheWorkingDirectoryThenTheEnvironmentThenTheApplication) {
    write("USER_QOS_PROFILES.xml", library(priority_profile("A", 1) + priority_profile("U", 1)));
    write("first.xml", library(priority_profile("A", 2) + priority_profile("E", 2)));
    write("second.xml", library(priority_profile("E", 3)));
    setenv("PEXA_QOS_PROFILES", ";first.xml;;second.xml;", 1);
    EXPECT_EQ(profiles_of("L"), (Names{"A", "E", "U"}));
    EXPECT_EQ(priority_of("U"), 1);
    EXPECT_EQ(priority_of("A"), 2);
    EXPECT_EQ(priority_of("E"), 3);
    ASSERT_EQ(load(library(priority_profile("E", 4))), DDS_RETCODE_OK);
    EXPECT_EQ(priority_of("E"), 4);
    DDS_StringSeq names{};
    EXPECT_EQ(DDS_DomainParticipantFactory_get_qos_profile_libraries(factory(), &names),
              DDS_RETCODE_OK);
    EXPECT_EQ(pexa::dds::to_strings(&names), Names{"L"});
    DDS_StringSeq_finalize(&names);
}

TEST_F(ProfileSources, AreReadOnceAndOneThatCannotBeReadIsLeftOut) {
    write("good.xml", library(priority_profile("A", 1)));
    write("bad.xml", "<dds>\n<qos_library name='L'>\n" + priority_profile("A", 2) + "</dds>");
    setenv("PEXA_QOS_PROFILES", "missing.xml;good.xml;bad.xml", 1);
    Reports reports;
    EXPECT_EQ(priority_of("A"), 1);
    const auto lines = reports.take();
    EXPECT_TRUE(has_line(lines, "missing.xml:0: the file cannot be read"));
    EXPECT_TRUE(has_line(lines, "bad.xml:3: qos_library: not well-formed: mismatched tag"));
    EXPECT_EQ(priority_of("A"), 1);
    EXPECT_FALSE(has_line(reports.take(), "missing.xml"));
    std::string many;
    for (int i = 0; i <= DDS_QOS_PROFILE_MAX_COUNT; ++i) {
        many += "<qos_profile name='" + std::to_string(i) + "'/>";
    }
    EXPECT_EQ(load(library(many)), DDS_RETCODE_ERROR);
    EXPECT_TRUE(has_line(reports.take(), "1: qos_profile: expected at most 1024 profiles"));
    EXPECT_EQ(profiles_of("L"), Names{"A"});
}

TEST_F(ProfileSources, AMistakeBesideTheProfilesIsSeenAtTheDefaultVerbosity) {
    const std::string profile = priority_profile("A", 1);
    const std::string good = "<qos_library name='L'>" + profile + "</qos_library>";
    const struct {
        std::string content;
        const char* report;  ///< NULL for none
    } cases[] = {
        {"\n<qos_libary name='M'/>" + good,
         "2: qos_libary: unknown element, its profiles are not read: expected qos_library"},
        {good + "<QoS_Library/>", "1: QoS_Library: unknown element, its profiles are not read"},
        {good + "<profiles>" + profile + "</profiles>",
         "1: profiles: unknown element, its profiles are not read: expected qos_library"},
        {good + profile, "1: qos_profile: expected inside qos_library, without which no entity"},
        {good + "<topic_qos/>", "1: topic_qos: expected inside qos_library"},
        {good + "<qos_library name='M'>\n<qos_profil name='B'/></qos_library>",
         "2: qos_profil: unknown element, expected qos_profile"},
        {good + "<qos_library><qos_profile name='B'/></qos_library>",
         "1: qos_library: expected an attribute name, not empty and without ::"},
        {"<qos_library name='L'>" + profile + "<qos_profile name='x::y'/></qos_library>",
         "1: qos_profile: expected an attribute name, not empty and without ::"},
        {good + "<types><qos_profiles/></types><data/><domain_library name='D'><domain name='d'/>"
                "</domain_library><application_library/><domain_participant_library/>"
                "<logger/><orvane><enabled>no</enabled></orvane>",
         nullptr},
    };
    Reports reports;
    QELLog_setInstrumentationMask(QEL_LOG_MODULE_DDS, QEL_LOG_BIT(QEL_LOG_LEVEL_ERROR));
    for (const auto& row : cases) {
        start_again();
        EXPECT_EQ(load("<dds>" + row.content + "</dds>"), DDS_RETCODE_OK);
        const auto lines = reports.take();
        EXPECT_EQ(lines.size(), row.report != nullptr ? 1U : 0U) << row.content;
        EXPECT_TRUE(row.report == nullptr ||
                    has_line(lines, std::string(":loaded.xml:") + row.report))
            << row.report;
        EXPECT_EQ(priority_of("A"), 1) << "the others count: " << row.content;
    }
}

TEST_F(ProfileSources, ReloadingReadsAllFilesAnewOrNone) {
    write("listed.xml", library(priority_profile("A", 1)));
    setenv("PEXA_QOS_PROFILES", "listed.xml", 1);
    ASSERT_EQ(load(library(priority_profile("B", 1))), DDS_RETCODE_OK);
    write("listed.xml", library(priority_profile("A", 2)));
    write("loaded.xml", library(priority_profile("C", 2)));
    EXPECT_EQ(profiles_of("L"), (Names{"A", "B"}));
    EXPECT_EQ(DDS_DomainParticipantFactory_reload_qos_profiles(factory()), DDS_RETCODE_OK);
    EXPECT_EQ(profiles_of("L"), (Names{"A", "C"}));
    EXPECT_EQ(priority_of("A"), 2);
    write("listed.xml", library(priority_profile("A", 3)));
    write("loaded.xml", "<dds");
    EXPECT_EQ(DDS_DomainParticipantFactory_reload_qos_profiles(factory()), DDS_RETCODE_ERROR);
    EXPECT_EQ(priority_of("A"), 2);
}

TEST_F(ProfileSources, WhoReceivesReportsMayAskForProfilesButNotLoadThemWhileTheyAreRead) {
    write("USER_QOS_PROFILES.xml",
          library("<qos_profile name='P'><publisher_qos><partition><name><element>x</element>"
                  "</name></partition></publisher_qos></qos_profile>"));
    // All levels pass, so that reading itself reports.
    const Reports all_levels;
    int reports = 0;
    const auto ask = [](void* data, QELLogModule, QELLogLevel, const char*) {
        if (++*static_cast<int*>(data) == 1) {
            EXPECT_EQ(profiles_of("L"), Names{}) << "not there yet";
            EXPECT_EQ(
                DDS_DomainParticipantFactory_load_qos_profiles(factory(), "USER_QOS_PROFILES.xml"),
                DDS_RETCODE_PRECONDITION_NOT_MET);
        }
    };
    QELLog_setSink(ask, &reports);
    EXPECT_EQ(profiles_of("L"), Names{"P"});
    QELLog_setSink(nullptr, nullptr);
    EXPECT_GT(reports, 0);
}

TEST_F(ProfileSources, ThreadsMayAskLoadAndReloadAtTheSameTime) {
    constexpr int thread_count = 4;
    constexpr int file_count = 40;
    write("USER_QOS_PROFILES.xml", library(priority_profile("U", 7)));
    for (int i = 0; i < file_count; ++i) {
        const std::string name = std::to_string(i);
        write(name + ".xml", library(priority_profile(name, i)));
    }
    std::vector<std::jthread> threads;
    std::atomic<int> wrong = 0;
    for (int first = 0; first < thread_count; ++first) {
        threads.emplace_back([&wrong, first] {
            wrong += priority_of("U") == 7 ? 0 : 1;
            for (int i = first; i < file_count; i += thread_count) {
                const std::string name = std::to_string(i);
                const std::string file = name + ".xml";
                wrong += DDS_DomainParticipantFactory_load_qos_profiles(factory(), file.c_str());
                wrong += DDS_DomainParticipantFactory_reload_qos_profiles(factory());
                wrong += priority_of(name.c_str()) == i ? 0 : 1;
            }
        });
    }
    threads.clear();  // joins
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(profiles_of("L").size(), file_count + 1U);
}

}  // namespace

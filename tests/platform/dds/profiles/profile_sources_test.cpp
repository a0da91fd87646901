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

TEST_F(ProfileSources, AreReadOnceAndABrokenOneIsLeftOut) {
    write("good.xml", library(priority_profile("A", 1)));
    write("bad.xml", "<dds>\n<qos_library name='L'>\n" + priority_profile("A", 2) +
                         "\n<profile/></qos_library></dds>");
    setenv("PEXA_QOS_PROFILES", "missing.xml;good.xml;bad.xml", 1);
    Reports reports;
    EXPECT_EQ(priority_of("A"), 1);
    const auto lines = reports.take();
    EXPECT_TRUE(has_line(lines, "missing.xml:0: the file cannot be read"));
    EXPECT_TRUE(has_line(lines, "bad.xml:4: profile: unknown element, expected qos_profile"));
    EXPECT_EQ(priority_of("A"), 1);
    EXPECT_FALSE(has_line(reports.take(), "missing.xml"));
    // An element for others is a warning, and the profiles count.
    EXPECT_EQ(load("<dds>\n<logger/><qos_library name='L'>" + priority_profile("A", 3) +
                   "</qos_library></dds>"),
              DDS_RETCODE_OK);
    EXPECT_TRUE(has_line(reports.take(), "loaded.xml:2: logger: unknown element, expected types"));
    EXPECT_EQ(priority_of("A"), 3);
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

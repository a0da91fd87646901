#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "tests/integration/programs.hpp"

namespace orvane::tests {
namespace {

/// The programs of these tests lose 5 % of the packets that they send.
class LossyNetwork : public testing::Test {
protected:
    static void SetUpTestSuite() {
        // The engine counts lost packets in a thousand.
        const std::string uri = std::getenv("CYCLONEDDS_URI");
        const std::string lossy = uri +
                                  ",<CycloneDDS><Domain Id=\"any\"><Internal><Test>"
                                  "<XmitLossiness>50</XmitLossiness>"
                                  "</Test></Internal></Domain></CycloneDDS>";
        ASSERT_EQ(setenv("CYCLONEDDS_URI", lossy.c_str(), 1), 0);
        ASSERT_EQ(setenv("PEXA_QOS_PROFILES", ORVANE_KEEP_ALL_PROFILE, 1), 0);
    }
};

TEST_F(LossyNetwork, BringsEveryMessageOfAProfileThatKeepsAll) {
    Viewer viewer;
    Application application{{"--profile", "delivery", "keep_all"}};
    ASSERT_TRUE(connect(application, viewer)) << viewer.process().transcript();

    ASSERT_EQ(application.ask("log 600 3000 1000"), "log");
    EXPECT_TRUE(await_all(application, viewer)) << application.process().transcript();
    EXPECT_EQ(difference(application.logged(), viewer.messages(numbered_category)), "");
    EXPECT_EQ(application.diagnostics(), std::vector<std::string>{});
}

TEST_F(LossyNetwork, AnswersEveryCommand) {
    Application application{{"--kind", "rover"}};
    const std::string rover = application.ask("identity") + " rover  ";
    const struct {
        Words arguments;
        std::string effect;
    } commands[] = {
        {{"set-level", "rover", "DEBUG"}, "filter level INFO -> DEBUG"},
        {{"set-verbosity", "rover", "API", "SILENT"}, "API ERROR -> SILENT"},
        {{"set-level", "rover", "INFO"}, "filter level DEBUG -> INFO"},
        {{"set-verbosity", "rover", "API", "ERROR"}, "API SILENT -> ERROR"},
    };
    constexpr int rounds = 4;
    for (int round = 0; round < rounds; ++round) {
        for (const auto& each : commands) {
            Words arguments{each.arguments};
            arguments.insert(arguments.end(), {"--timeout", "20"});
            ChildProcess tool{tool_in_domain(arguments)};
            tool.wait_for_end();
            EXPECT_EQ(tool.transcript(), rover + each.effect + "\nexit 0");
        }
    }
}

}  // namespace
}  // namespace orvane::tests

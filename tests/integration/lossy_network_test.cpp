#include <cstdlib>

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

}  // namespace
}  // namespace orvane::tests

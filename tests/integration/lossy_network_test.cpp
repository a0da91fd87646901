#include <cstdlib>

#include "tests/integration/programs.hpp"

namespace orvane::tests {
namespace {

TEST(LossyNetwork, BringsEveryMessageOfAProfileThatKeepsAll) {
    // The programs lose 5 % of the packets that they send; the engine counts in a thousand.
    const Words launcher = {
        "env",
        "CYCLONEDDS_URI=" + std::string{std::getenv("CYCLONEDDS_URI")} +
            ",<CycloneDDS><Domain Id=\"any\"><Internal><Test><XmitLossiness>50</XmitLossiness>"
            "</Test></Internal></Domain></CycloneDDS>",
        "PEXA_QOS_PROFILES=" ORVANE_KEEP_ALL_PROFILE};
    Viewer viewer{{}, launcher};
    Application application{{"--profile", "delivery", "keep_all"}, launcher};
    ASSERT_TRUE(connect(application, viewer)) << viewer.process().transcript();

    ASSERT_EQ(application.ask("log 600 3000 1000"), "log");
    EXPECT_TRUE(await_all(application, viewer)) << application.process().transcript();
    EXPECT_EQ(difference(application.logged(), viewer.messages(numbered_category)), "");
    EXPECT_EQ(application.diagnostics(), std::vector<std::string>{});
}

}  // namespace
}  // namespace orvane::tests

#include <algorithm>

#include "tests/integration/programs.hpp"

namespace orvane::tests {
namespace {

/// Sends a line and waits for the answer to it.
bool ask(ChildProcess& process, const std::string& answer) {
    const auto answers = [&](const Output& output) {
        return std::ranges::count(output.out, "> " + answer);
    };
    const auto before = answers(process.output());
    process.send_line("");
    return process.wait_until([&](const Output& output) { return answers(output) > before; });
}

TEST(Unloading, LeavesTheEngineTheCodeThatItCallsAndTheLibraryReadyForAnotherLoad) {
    ChildProcess application{{ORVANE_UNLOADING_APPLICATION, domain(), ORVANE_LIBRARY}};
    for (int round = 1; round <= 2; ++round) {
        ASSERT_TRUE(ask(application, "loaded")) << application.transcript();
        // Its endpoints come and go while the library is loaded and while it is not.
        Viewer viewer;
        EXPECT_TRUE(viewer.wait_until([](const auto& messages) { return !messages.empty(); }))
            << application.transcript();
        ASSERT_TRUE(ask(application, "unloaded")) << application.transcript();
    }
    application.close_input();
    EXPECT_EQ(application.wait_for_end(), "exit 0") << application.transcript();
}

}  // namespace
}  // namespace orvane::tests

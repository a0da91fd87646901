#include <csignal>

#include "tests/integration/programs.hpp"
#include "tests/support/events.hpp"
#include "tests/support/faults.hpp"
#include "tests/support/logger.hpp"

namespace orvane::tests {
namespace {

using namespace std::chrono_literals;

/// Logs one word until the viewer has @p count messages of a category.
bool log_until(QEL_KX_Orvane* logger, Viewer& viewer, std::size_t count,
               const std::string& category, const std::string& word) {
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!viewer.wait_for(count, category, 50ms)) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        QEL_KX_Orvane_logMessageWithLevelCategory(logger, 600, word.c_str(), word.c_str());
    }
    return true;
}

TEST(SlowViewer, GetsEveryMessageOfAProfileThatKeepsAllAlsoAfterWritesHaveTimedOut) {
    test::Events<DDS_ReturnCode_t> timeouts;
    const test::Stub<decltype(DDS_DataWriter_write_untypedI)> write(
        "DDS_DataWriter_write_untypedI", [&](auto... arguments) {
            const DDS_ReturnCode_t result = write.real(arguments...);
            if (result == DDS_RETCODE_TIMEOUT) {
                timeouts.add(result);
            }
            return result;
        });

    Viewer viewer;
    DDS_DomainParticipantFactory_load_qos_profiles(test::Node::factory(),
                                                   ORVANE_SOURCE_DIR "/tests/xml/keep_all.xml");
    test::Options options = test::make_options();
    QEL_KX_Options_setQueueSize(options.get(), 1000);
    QEL_KX_Options_setQosLibrary(options.get(), "test");
    QEL_KX_Options_setQosProfile(options.get(), "keep_all");
    const test::RunningLogger logger(std::move(options));
    ASSERT_TRUE(log_until(logger.get(), viewer, 1, "hello", "hello"))
        << viewer.process().transcript();

    // More bytes than the engine lets go out unacknowledged.
    std::vector<std::string> expected;
    viewer.process().send_signal(SIGSTOP);
    for (int number = 0; number < 300; ++number) {
        expected.push_back(std::to_string(number) + std::string(3900, '.'));
        QEL_KX_Orvane_logMessageWithLevelCategory(logger.get(), 600, expected.back().c_str(),
                                                  "kept");
    }
    EXPECT_GE(timeouts.await(3).size(), 3U);
    viewer.process().send_signal(SIGCONT);

    // Each write that timed out has left a message behind, which later ones push out.
    EXPECT_TRUE(log_until(logger.get(), viewer, expected.size(), "kept", "later"));
    std::vector<std::string> viewed;
    for (const ViewedMessage& message : viewer.messages("kept")) {
        viewed.push_back(message.text);
    }
    EXPECT_EQ(viewed, expected);
}

}  // namespace
}  // namespace orvane::tests

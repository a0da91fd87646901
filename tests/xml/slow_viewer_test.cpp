#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <csignal>
#include <mutex>
#include <string>
#include <vector>

#include "tests/integration/application.hpp"
#include "tests/integration/viewer.hpp"
#include "tests/xml/host.hpp"
#include "tests/xml/parsed_config.hpp"

namespace {

std::mutex timeouts_mutex;
std::condition_variable timed_out;
int timeouts = 0;

}  // namespace

extern "C" {

DDS_ReturnCode_t __real_QEL_KX_LogMessageDataWriter_write_w_timestamp(
    QEL_KX_LogMessageDataWriter* self, const QEL_KX_LogMessage* sample,
    const DDS_InstanceHandle_t* handle, const DDS_Time_t* timestamp);
DDS_ReturnCode_t __wrap_QEL_KX_LogMessageDataWriter_write_w_timestamp(
    QEL_KX_LogMessageDataWriter* self, const QEL_KX_LogMessage* sample,
    const DDS_InstanceHandle_t* handle, const DDS_Time_t* timestamp) {
    const DDS_ReturnCode_t result =
        __real_QEL_KX_LogMessageDataWriter_write_w_timestamp(self, sample, handle, timestamp);
    if (result == DDS_RETCODE_TIMEOUT) {
        const std::lock_guard lock(timeouts_mutex);
        ++timeouts;
        timed_out.notify_all();
    }
    return result;
}
}

namespace orvane::tests {
namespace {

using namespace std::chrono_literals;

bool await_timeouts(int count) {
    std::unique_lock lock(timeouts_mutex);
    return timed_out.wait_for(lock, patience, [&] { return timeouts >= count; });
}

void log(const std::string& category, const std::string& text) {
    QEL_KX_Orvane_logMessageWithLevelCategory(QEL_KX_Orvane_getInstance(), QEL_KX_LEVEL_INFO,
                                              text.c_str(), category.c_str());
}

/// Logs one word until the viewer has @p count messages of a category.
bool log_until(Viewer& viewer, std::size_t count, const std::string& category,
               const std::string& word) {
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!viewer.wait_for(count, category, 50ms)) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        log(word, word);
    }
    return true;
}

/// Starts the logger of this process with a profile.
[[nodiscard]] bool start(const test::Host& host, QEL_KX_Options* options) {
    DDS_DomainParticipantFactory_load_qos_profiles(DDS_DomainParticipantFactory_get_instance(),
                                                   ORVANE_SOURCE_DIR "/tests/xml/keep_all.xml");
    QEL_KX_Options_setQosLibrary(options, "test");
    QEL_KX_Options_setQosProfile(options, "keep_all");
    return QEL_KX_XMLConfig_startWithXMLConfiguration(host.participant(), options, nullptr) != 0;
}

TEST(SlowViewer, GetsEveryMessageOfAProfileThatKeepsAllAlsoAfterWritesHaveTimedOut) {
    // More bytes than the engine lets go out unacknowledged.
    constexpr std::size_t count = 300;
    Viewer viewer{ORVANE_TEST_DOMAIN};
    const test::ParsedConfig config(
        test::with_orvane("<enabled>true</enabled><queue_size>1000</queue_size>"));
    const test::Host host;
    ASSERT_TRUE(start(host, config.options()));
    ASSERT_TRUE(log_until(viewer, 1, "hello", "hello")) << viewer.process().transcript();

    std::vector<std::string> expected;
    viewer.process().send_signal(SIGSTOP);
    for (std::size_t i = 0; i < count; ++i) {
        expected.push_back(std::to_string(i) + std::string(3900, '.'));
        log("kept", expected.back());
    }
    EXPECT_TRUE(await_timeouts(3));
    viewer.process().send_signal(SIGCONT);

    // Each write that timed out has left a message behind, which later ones push out.
    EXPECT_TRUE(log_until(viewer, count, "kept", "later"));
    std::vector<std::string> viewed;
    for (const ViewedMessage& message : viewer.messages("kept")) {
        viewed.push_back(message.text);
    }
    EXPECT_EQ(viewed, expected);
}

}  // namespace
}  // namespace orvane::tests

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "orvane/admin.h"
#include "orvane/core.h"
#include "tests/core/faults.hpp"
#include "tests/core/log_subscriber.hpp"
#include "tests/core/running_logger.hpp"

namespace {

using orvane::test::Finalisation;
using orvane::test::FixedTime;
using orvane::test::LogSubscriber;
using orvane::test::TestOptions;
using orvane::test::Written;

TEST(RunningLogger, PublishesWhatIsLoggedWithItsTimeAndOrigin) {
    TestOptions options;
    QEL_KX_Orvane_setOptions(options.get());
    const Finalisation at_end;
    QEL_KX_Orvane* logger = QEL_KX_Orvane_getInstance();
    ASSERT_NE(logger, nullptr);
    LogSubscriber subscriber;
    ASSERT_TRUE(subscriber.is_complete());
    const std::string text(5000, 'x');
    {
        const FixedTime now({1700000000, 0x80000000});
        QEL_KX_Orvane_logMessageWithLevelCategory(logger, 250, text.c_str(), "category");
        QEL_KX_Orvane_debug(logger, "filtered");
        QEL_KX_Orvane_info(logger, "last");
    }
    const std::vector<Written> messages = subscriber.wait_for(2);
    ASSERT_EQ(messages.size(), 2U);
    // One instance per level: the order between levels is the reader's.
    const auto first = std::find_if(messages.begin(), messages.end(),
                                    [](const Written& each) { return each.level == 250; });
    ASSERT_NE(first, messages.end());
    EXPECT_EQ(first->message, text.substr(0, 4096));
    EXPECT_EQ(first->category, "category");
    EXPECT_EQ(first->timestamp.sec, 1700000000);
    EXPECT_NEAR(first->timestamp.nanosec, 500000001, 1);
    EXPECT_EQ(static_cast<DDS_UnsignedLong>(first->origin.rtps_host_id),
              QEL_KX_DDSEntities_getRtpsHostId(logger->ddsEntities));
    EXPECT_EQ(static_cast<DDS_UnsignedLong>(first->origin.rtps_app_id),
              QEL_KX_DDSEntities_getRtpsAppId(logger->ddsEntities));
}

TEST(RunningLogger, IsTheSameForThreadsThatAskForItAtTheSameTime) {
    TestOptions options;
    QEL_KX_Orvane_setOptions(options.get());
    const Finalisation at_end;
    std::vector<QEL_KX_Orvane*> instances(4);
    {
        std::vector<std::jthread> threads;
        threads.reserve(instances.size());
        for (QEL_KX_Orvane*& instance : instances) {
            threads.emplace_back([&instance] { instance = QEL_KX_Orvane_getInstance(); });
        }
    }
    EXPECT_NE(instances[0], nullptr);
    EXPECT_EQ(std::count(instances.begin(), instances.end(), instances[0]), 4);
}

TEST(RunningLogger, MayComeAndGoWhileThreadsLog) {
    constexpr int rounds = 4;
    std::atomic<QEL_KX_Orvane*> shared = nullptr;
    std::atomic<bool> is_over = false;
    std::atomic<int> calls = 0;
    const auto log = [&](int thread) {
        const std::string text(thread % 2 == 0 ? 20U : 200U, 'x');
        while (!is_over) {
            // The pointer of a finalised instance goes on being used.
            QEL_KX_Orvane_logMessageWithLevelCategory(shared, 600, text.c_str(), "race");
            QEL_KX_Orvane_isOrvaneRunning();
            ++calls;
            std::this_thread::yield();
        }
    };
    testing::internal::CaptureStdout();
    {
        std::vector<std::jthread> threads;
        threads.reserve(4);
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back(log, thread);
        }
        for (int round = 0; round < rounds; ++round) {
            TestOptions options;
            EXPECT_EQ(QEL_KX_Orvane_setOptions(options.get()), 1);
            shared = QEL_KX_Orvane_getInstance();
            EXPECT_NE(shared.load(), nullptr);
            const int before = calls;
            while (calls < before + 200) {
                std::this_thread::yield();
            }
            EXPECT_EQ(QEL_KX_Orvane_finalizeInstance(), DDS_RETCODE_OK);
        }
        is_over = true;
    }
    // Nothing but the queue's own complaint that it is full.
    const std::string output = testing::internal::GetCapturedStdout();
    constexpr std::string_view complaint =
        "KX Warning: QEL_KX_MessageQueue_push: Max queue size reached, message will get lost\n";
    ASSERT_EQ(output.size() % complaint.size(), 0U) << output.substr(0, 1000);
    for (std::size_t at = 0; at < output.size(); at += complaint.size()) {
        ASSERT_EQ(output.substr(at, complaint.size()), complaint);
    }
}

TEST(RunningLogger, EndsWhileAListenerThatLogsIsWaitingForIt) {
    for (int round = 0; round < 3; ++round) {
        std::atomic<QEL_KX_Orvane*> shared = nullptr;
        std::atomic<int> heard = 0;
        // The middleware runs this on the thread that writes, or on one that a deletion waits for.
        LogSubscriber subscriber([&] {
            ++heard;
            QEL_KX_Orvane_info(shared, "heard");
        });
        TestOptions options;
        QEL_KX_Orvane_setOptions(options.get());
        shared = QEL_KX_Orvane_getInstance();
        ASSERT_NE(shared.load(), nullptr);
        testing::internal::CaptureStdout();
        std::jthread producer([&](const std::stop_token& stop) {
            while (!stop.stop_requested()) {
                QEL_KX_Orvane_info(shared, "said");
                std::this_thread::yield();
            }
        });
        EXPECT_GE(subscriber.wait_for(5).size(), 5U);
        EXPECT_EQ(QEL_KX_Orvane_finalizeInstance(), DDS_RETCODE_OK);
        producer.request_stop();
        producer.join();
        static_cast<void>(testing::internal::GetCapturedStdout());
        EXPECT_GE(heard, 5);
    }
}

}  // namespace

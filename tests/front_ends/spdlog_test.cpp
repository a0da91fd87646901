#include "orvane/spdlog_sink.h"

#include <spdlog/async.h>
#include <spdlog/spdlog.h>

#include <thread>

#include "tests/support/queued_logger.hpp"

namespace orvane::test {
namespace {

TEST(SpdlogSink, KeepsLevelNameTextAndTime) {
    QueuedLogger queued{8};
    queued.set_filter_level(QEL_KX_LEVEL_TRACE);
    auto logger = spdlog::logger{"pump", std::make_shared<SpdlogSink>()};
    logger.set_level(spdlog::level::trace);
    const auto time = spdlog::log_clock::time_point{std::chrono::milliseconds{1'700'000'000'250}};
    for (const auto level : {spdlog::level::trace, spdlog::level::debug, spdlog::level::info,
                             spdlog::level::warn, spdlog::level::err, spdlog::level::critical}) {
        logger.log(time, spdlog::source_loc{}, level, "180 kPa");
        const auto message = queued.pop();
        ASSERT_TRUE(message);
        EXPECT_EQ(message->category, "pump");
        EXPECT_EQ(message->text, "180 kPa");
        EXPECT_EQ(message->time.sec, 1'700'000'000);
        EXPECT_EQ(message->time.nanosec, 250'000'000U);
        EXPECT_EQ(message->level, from_spdlog_level(level));
        EXPECT_EQ(to_spdlog_level(message->level), level);
    }
    // The more severe of the two for levels that spdlog does not have.
    EXPECT_EQ(to_spdlog_level(QEL_KX_LEVEL_SEVERE), spdlog::level::critical);
    EXPECT_EQ(to_spdlog_level(QEL_KX_LEVEL_NOTICE), spdlog::level::info);
    EXPECT_EQ(to_spdlog_level(QEL_KX_LEVEL_SILENT), spdlog::level::off);

    queued.set_filter_level(QEL_KX_LEVEL_WARNING);
    logger.info("not asked for");
    logger.log(spdlog::level::off, "no level");
    logger.warn(std::string(ORVANE_LOG_MESSAGE_BOUND - 1, 'x') + "\u00e9");
    EXPECT_EQ(queued.pop()->text, std::string(ORVANE_LOG_MESSAGE_BOUND - 1, 'x'));
    EXPECT_FALSE(queued.pop());
}

TEST(SpdlogSink, LoggersOfManyThreadsShareIt) {
    constexpr int threads = 4;
    constexpr int messages = 500;
    QueuedLogger queued{threads * messages};
    const auto sink = std::make_shared<SpdlogSink>();
    const auto pool = std::make_shared<spdlog::details::thread_pool>(64, 2);
    auto asynchronous = std::make_shared<spdlog::async_logger>("a", sink, pool);
    auto synchronous = std::make_shared<spdlog::logger>("s", sink);
    {
        std::vector<std::jthread> callers;
        for (int number = 0; number < threads; ++number) {
            callers.emplace_back([&, logger = number % 2 == 0 ? asynchronous : synchronous] {
                for (int message = 0; message < messages; ++message) {
                    logger->info("{}", std::string(200, logger->name()[0]));
                }
            });
        }
    }
    std::map<std::string, int> seen;
    for (int received = 0; received < threads * messages;) {
        const auto message = queued.pop();
        if (message) {
            EXPECT_EQ(message->text, std::string(200, message->category[0]));
            ++seen[message->category];
            ++received;
        }
    }
    EXPECT_EQ(seen["a"], threads / 2 * messages);
    EXPECT_EQ(seen["s"], threads / 2 * messages);
}

}  // namespace
}  // namespace orvane::test

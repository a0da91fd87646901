#include "tools/domain/log_stream.hpp"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

namespace orvane::tools {
namespace {

using namespace std::chrono_literals;
using Clock = LogStream::Clock;

constexpr Application named{1, 1};
constexpr Application mute{1, 2};

Origin origin(const Application& application, std::uint64_t number) {
    return {{{application.host_id, application.app_id, 0, 0}}, number};
}

/// "pump a, - b, pump lost 3".
std::string text_of(const std::vector<Event>& events) {
    std::string text;
    for (const Event& event : events) {
        const auto* message = std::get_if<MessageEvent>(&event);
        const auto* loss = std::get_if<LossEvent>(&event);
        const Logger& logger = message != nullptr ? message->logger : loss->logger;
        text += text.empty() ? "" : ", ";
        text += logger.kind.empty() ? "-" : logger.kind;
        text += message != nullptr ? ' ' + message->record.message
                                   : " lost " + std::to_string(loss->lost());
    }
    return text;
}

class Stream : public testing::Test {
protected:
    void log(const Application& application, const char* message) {
        LogRecord record;
        record.application = application;
        record.message = message;
        stream_.receive(record, origin(application, ++numbers_[application]), now_);
    }
    void name_pump() {
        LoggerState state;
        state.application = named;
        state.kind = "pump";
        directory_.add(state);
    }
    std::string take_at(std::chrono::milliseconds when, bool is_last = false) {
        now_ = Clock::time_point{when};
        return take(is_last);
    }
    std::string take(bool is_last = false) {
        std::vector<Event> events;
        stream_.take(now_, 0, is_last, events);
        return text_of(events);
    }
    /// Until nothing more is told of writers that say nothing.
    std::string settle(const std::set<Endpoint>& matched) {
        stream_.set_matched(matched);
        std::string told = take();
        while (const auto next = stream_.next_deadline()) {
            now_ = *next;
            told += take();
        }
        return told;
    }

    LoggerDirectory directory_;
    LogStream stream_{directory_};
    Clock::time_point now_{};
    std::map<Application, std::uint64_t> numbers_;
};

TEST_F(Stream, WaitsForNamesButNotForEver) {
    log(named, "a");
    log(mute, "b");
    EXPECT_EQ(take_at(100ms), "");
    EXPECT_EQ(stream_.next_deadline(), Clock::time_point{500ms});
    name_pump();
    log(named, "c");
    EXPECT_EQ(take_at(200ms), "pump a") << "the one behind it has no name yet";
    EXPECT_EQ(take_at(500ms), "- b, pump c");
    log(mute, "d");
    EXPECT_EQ(take_at(501ms), "- d") << "it has made others wait";
    log({1, 3}, "e");
    EXPECT_EQ(take_at(502ms, true), "- e");
}

TEST_F(Stream, TellsWhoHasPublishedInAnothersName) {
    LoggerState real;
    real.application = {1, 1, 7};
    real.kind = "pump";
    directory_.add(real);
    const Endpoint planner{{2, 2, 2, 0}};
    for (const bool is_authenticated : {false, true}) {
        LogStream stream{directory_, is_authenticated};
        LogRecord record;
        record.application = real.application;
        stream.receive(record, {{{1, 1, 7, 0}}, 1}, now_);
        record.application = named;
        stream.receive(record, {planner, 1}, now_);
        stream.receive(record, {planner, 2}, now_);
        std::vector<Event> events;
        stream.take(now_, 0, false, events);
        EXPECT_EQ(events.size(), is_authenticated ? 1U : 3U) << "the name of the publisher matters";
        stream.take(now_ + LogStream::patience_for_names, 0, false, events);
        ASSERT_EQ(events.size(), 3U);
        for (const Event& event : events) {
            const auto& message = std::get<MessageEvent>(event);
            EXPECT_EQ(message.logger.application, real.application);
            EXPECT_EQ(message.publisher == nullptr, &event == events.data());
        }
        const auto& last = *std::get<MessageEvent>(events.back()).publisher;
        EXPECT_EQ(last.logger.application, application_of(planner));
        EXPECT_EQ(last.is_authenticated, is_authenticated);
        EXPECT_EQ(std::get<MessageEvent>(events[1]).publisher.get(), &last) << "made once";
    }
}

TEST_F(Stream, TellsLossesOfEachWriter) {
    name_pump();
    LoggerStatistics said;
    said.application = named;
    said.writer = origin(named, 0).writer;
    said.at_match = MessageCounts{};
    stream_.receive(said, now_);
    log(named, "a");
    numbers_[named] += 4;
    log(named, "b");
    EXPECT_EQ(take_at(0ms), "pump a, pump b");
    EXPECT_EQ(stream_.next_deadline(), Clock::time_point{LossAccount::patience});
    stream_.receive_end(origin(named, 3), now_);
    stream_.receive_end({origin(named, 0).writer, {}}, now_);
    said.now = {.published = 6, .queue_full = 7};
    stream_.receive(said, now_);
    EXPECT_EQ(take_at(1ms), "pump lost 7");
    EXPECT_EQ(take_at(LossAccount::patience), "pump lost 3");
    EXPECT_EQ(stream_.next_deadline(), std::nullopt);
}

TEST_F(Stream, KeepsTheAccountsOfSomeWritersThatHaveGone) {
    name_pump();
    const auto earlier = [&] { return stream_.earlier([](const Logger&) { return true; }); };
    numbers_[named] = 2;
    log(named, "a");
    EXPECT_EQ(settle({origin(named, 0).writer}), "pump a");
    EXPECT_EQ(settle({}), "");
    EXPECT_EQ(earlier(), 2U);
    numbers_[named] = 2;
    log(named, "again");
    numbers_[named] = 5;
    log(named, "b");
    EXPECT_EQ(take(), "pump b");
    EXPECT_EQ(settle({}), "pump lost 2") << "while it was away";
    constexpr std::uint32_t others = WriterAccounts::most_closed + 100;
    for (std::uint32_t app = 0; app < others; ++app) {
        numbers_[{2, app}] = 7;
        log({2, app}, "a");
    }
    settle({});
    EXPECT_EQ(stream_.accounts(), WriterAccounts::most_closed);
    EXPECT_EQ(earlier(), 2U + others * 7U);
}

}  // namespace
}  // namespace orvane::tools

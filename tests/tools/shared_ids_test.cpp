// Two participants of this process speak in whose name they like.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "tools/domain/log_publication.hpp"
#include "tools/domain/log_subscription.hpp"
#include "tools/domain/view.hpp"
#include "tools/text/logger_name.hpp"

namespace orvane::tools {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds patience{30};
const DomainOptions test_domain{.id = ORVANE_TEST_DOMAIN};

LoggerState state_of(const Application& application, const char* kind) {
    LoggerState state;
    state.application = application;
    state.kind = kind;
    state.state = QEL_KX_STATE_OPERATIONAL;
    return state;
}

LogRecord record_of(const Application& application, const char* message) {
    LogRecord record;
    record.nanoseconds = 1;
    record.application = application;
    record.message = message;
    return record;
}

/// What `orvane list` knows of the domain.
class Observer {
public:
    Observer() { EXPECT_NE(administration_, nullptr); }

    /// Waits until the loggers are these: "forged of 1, pump".
    bool sees(const std::string& expected) {
        const auto deadline = Clock::now() + patience;
        while (loggers() != expected && Clock::now() < deadline) {
            EXPECT_TRUE(view_.next(100ms));
        }
        EXPECT_EQ(loggers(), expected);
        return loggers() == expected;
    }
    std::vector<LoggerEntry> entries() const { return view_.entries(); }

private:
    std::string loggers() const {
        std::string text;
        for (const LoggerEntry& entry : view_.entries()) {
            text += (text.empty() ? "" : ", ") + entry.state.kind + via_text(entry.publisher);
        }
        return text;
    }

    std::string failure_;
    std::unique_ptr<Administration> administration_ =
        Administration::open(test_domain, Administration::Access::read, failure_);
    DomainView view_{*administration_, true};
};

class SharedHostAndApp : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(pump_ && planner_);
        ASSERT_EQ(planner_->write(state_of(planner_->identity(), "planner")), Status::ok);
        ASSERT_EQ(pump_->write(state_of(id_, "pump")), Status::ok);
    }

    /// The loggers that are expected, in the order of their ids.
    std::string with_planner(const std::string& pumps) const {
        return id_ < planner_->identity() ? pumps + ", planner" : "planner, " + pumps;
    }

    std::unique_ptr<LogPublication> pump_ = LogPublication::open(test_domain);
    std::unique_ptr<LogPublication> planner_ = LogPublication::open(test_domain);
    const Application id_ = pump_->identity();
};

TEST_F(SharedHostAndApp, KeepsTheStatesOfSeveralWritersApart) {
    Observer early;
    ASSERT_TRUE(early.sees(with_planner("pump")));
    ASSERT_EQ(planner_->write(state_of(id_, "forged")), Status::ok);
    const std::string both = with_planner("forged via planner, pump");
    ASSERT_TRUE(early.sees(both));
    Observer late;
    ASSERT_TRUE(late.sees(both));
    for (const LoggerEntry& entry : late.entries()) {
        EXPECT_EQ(entry.shares_id, entry.state.kind != "planner") << entry.state.kind;
    }
    // The one who speaks in the name of the other disposes the instance.
    ASSERT_EQ(planner_->end(id_), Status::ok);
    ASSERT_TRUE(early.sees(with_planner("pump")));
    ASSERT_TRUE(late.sees(with_planner("pump")));
    ASSERT_EQ(planner_->write(state_of(id_, "again")), Status::ok);
    ASSERT_TRUE(early.sees(with_planner("again via planner, pump")));
    // The named one goes.
    pump_.reset();
    ASSERT_TRUE(early.sees(with_planner("again via planner")));
    ASSERT_TRUE(late.sees(with_planner("again via planner")));
    EXPECT_FALSE(late.entries().front().shares_id);
}

TEST_F(SharedHostAndApp, TellsWhoHasPublishedAMessageInAnothersName) {
    for (LogPublication* each : {pump_.get(), planner_.get()}) {
        ASSERT_EQ(each->write(record_of(id_, "on")), LogPublication::Written::yes);
        each->flush();
    }
    for (const bool is_authenticated : {false, true}) {
        const auto viewer = LogSubscription::open(test_domain, is_authenticated);
        ASSERT_NE(viewer, nullptr);
        std::vector<std::string> seen;
        const auto deadline = Clock::now() + patience;
        while (seen.size() < 2 && Clock::now() < deadline) {
            viewer->wait(100ms);
            const auto events = viewer->take(false);
            ASSERT_TRUE(events);
            for (const Event& event : *events) {
                if (const auto* message = std::get_if<MessageEvent>(&event)) {
                    const std::shared_ptr<const Publisher>& publisher = message->publisher;
                    EXPECT_TRUE(!publisher ||
                                publisher->logger.application == planner_->identity());
                    seen.push_back(name_of(message->logger) + (publisher ? " of another" : "") +
                                   via_text(publisher));
                }
            }
        }
        std::sort(seen.begin(), seen.end());
        const std::string other =
            is_authenticated ? "pump of another via planner" : "pump of another";
        EXPECT_EQ(seen, (std::vector<std::string>{"pump", other}));
    }
}

}  // namespace
}  // namespace orvane::tools

// A domain of loggers that a test describes, with a time of its own.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tools/domain/administration.hpp"

namespace orvane::tools {

using namespace std::chrono_literals;

inline LoggerState logger_state(std::uint32_t app_id, std::string kind,
                                std::uint32_t instance_id = 0) {
    LoggerState state;
    state.application = {0x0a141e28, app_id, instance_id};
    state.kind = std::move(kind);
    state.state = QEL_KX_STATE_OPERATIONAL;
    state.filter_level = 600;
    state.verbosities.fill(QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_ERROR);
    return state;
}

/// A logger whose times count from the beginning, but for those after a request.
struct FakeLogger {
    LoggerState state;
    std::chrono::milliseconds publishes = 0ms;  ///< its State writer is found
    std::optional<std::chrono::milliseconds> heard = 10ms;
    std::optional<std::chrono::milliseconds> receives = 20ms;
    std::optional<std::chrono::milliseconds> dies = {};
    std::size_t deaf_requests = 0;  ///< come to nothing
    QEL_KX_ADMIN_CommandResult result = QEL_KX_COMMAND_RESULT_OK;
    std::string message = {};
    std::optional<std::chrono::milliseconds> shows_after = 5ms;  ///< the command in its State
};

class FakeDomain final : public Administration {
public:
    struct Sent {
        std::chrono::milliseconds time;
        Application target;
        std::int32_t invocation;
    };

    explicit FakeDomain(std::vector<FakeLogger> loggers) : loggers_(std::move(loggers)) {
        for (const FakeLogger& logger : loggers_) {
            at(logger.publishes, [](Arrivals&) {});
            if (logger.receives) {
                at(*logger.receives, [](Arrivals&) {});
            }
            if (logger.heard) {
                show(*logger.heard, logger.state);
            }
            if (logger.dies) {
                at(*logger.dies, [application = logger.state.application](Arrivals& arrivals) {
                    arrivals.states.push_back({application, std::nullopt, false});
                });
            }
        }
    }

    /// Lets something arrive.
    void at(std::chrono::milliseconds time, std::function<void(Arrivals&)> event) {
        events_.emplace(time, std::move(event));
    }

    std::chrono::milliseconds elapsed() const { return elapsed_; }
    const std::vector<Sent>& sent() const { return sent_; }

    Clock::time_point now() const override { return Clock::time_point{} + elapsed_; }
    void wait(std::chrono::milliseconds longest) override {
        const bool news = !events_.empty() && events_.begin()->first - elapsed_ <= longest;
        elapsed_ = news ? std::max(elapsed_, events_.begin()->first) : elapsed_ + longest;
    }
    void interrupt() override { interrupted_ = true; }
    bool interrupted() const override { return interrupted_; }

    Result<Arrivals> take() override {
        Arrivals arrivals;
        while (!events_.empty() && events_.begin()->first <= elapsed_) {
            const auto event = events_.extract(events_.begin());
            event.mapped()(arrivals);
        }
        return arrivals;
    }

    std::set<Application> state_writers() override {
        return those([&](const FakeLogger& each) { return each.publishes <= elapsed_; });
    }
    std::set<Application> command_readers() override {
        return those(
            [&](const FakeLogger& each) { return each.receives && *each.receives <= elapsed_; });
    }
    tools::ParticipantCensus census() override { return {}; }
    Application identity() const override { return {1, 1}; }

    Status send(const Application& target, std::int32_t invocation,
                const Command& command) override {
        sent_.push_back({elapsed_, target, invocation});
        for (FakeLogger& logger : loggers_) {
            if (share_host_and_app(logger.state.application, target)) {
                obey(logger, invocation, command);
            }
        }
        return Status::ok;
    }

private:
    void obey(FakeLogger& logger, std::int32_t invocation, const Command& command) {
        if (logger.deaf_requests > 0) {
            logger.deaf_requests -= 1;
            return;
        }
        at(elapsed_ + 1ms, [response = CommandResponse{logger.state.application, identity(),
                                                       invocation, logger.result, logger.message}](
                               Arrivals& arrivals) { arrivals.responses.push_back(response); });
        if (logger.result == QEL_KX_COMMAND_RESULT_OK && logger.shows_after) {
            logger.state.filter_level = std::get<SetFilterLevel>(command).level;
            show(elapsed_ + *logger.shows_after, logger.state);
        }
    }

    void show(std::chrono::milliseconds time, const LoggerState& state) {
        at(time, [state](Arrivals& arrivals) {
            arrivals.states.push_back({state.application, state, true, state.application});
        });
    }

    template <typename Predicate>
    std::set<Application> those(const Predicate& predicate) {
        std::set<Application> applications;
        for (const FakeLogger& logger : loggers_) {
            const bool lives = !logger.dies || *logger.dies > elapsed_;
            if (lives && predicate(logger)) {
                applications.insert(logger.state.application);
            }
        }
        return applications;
    }

    std::vector<FakeLogger> loggers_;
    std::multimap<std::chrono::milliseconds, std::function<void(Arrivals&)>> events_;
    std::vector<Sent> sent_;
    std::chrono::milliseconds elapsed_ = 0ms;
    bool interrupted_ = false;
};

}  // namespace orvane::tools

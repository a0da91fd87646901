#include "tools/domain/command_round.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <set>

namespace orvane::tools {
namespace {

using Clock = Administration::Clock;
using Milliseconds = std::chrono::milliseconds;

constexpr Milliseconds resend_period{1000};

struct Request {
    CommandOutcome outcome;
    std::int32_t invocation = 0;
    std::optional<Clock::time_point> sent;
};

class CommandRound {
public:
    CommandRound(DomainView& view, const std::vector<LoggerState>& targets, const Command& command)
        : view_(view), targets_(targets), command_(command) {
        for (const LoggerState& target : targets) {
            add(target, false);
        }
        add_bystanders();
    }

    bool is_complete() const {
        return std::all_of(requests_.begin(), requests_.end(), [&](const Request& request) {
            const CommandOutcome& outcome = request.outcome;
            const bool refused = outcome.result && *outcome.result != QEL_KX_COMMAND_RESULT_OK;
            const bool done = outcome.result && is_in_force(command_, outcome.now);
            return !outcome.alive || refused || done;
        });
    }

    /// Sends the requests that are due. @return failed when the writer failed
    Status send() {
        const std::set<Application> readers = administration().command_readers();
        for (Request& request : requests_) {
            request.outcome.receives_commands |=
                readers.contains(request.outcome.before.application);
            const auto due = due_time(request);
            if (due && *due <= administration().now() && send(request) == Status::failed) {
                return Status::failed;
            }
        }
        return Status::ok;
    }

    /// Waits for news, but not beyond the next sending. @return failed when a reader failed
    Status receive(Milliseconds longest) {
        for (const Request& request : requests_) {
            if (const auto due = due_time(request)) {
                longest = std::min(longest,
                                   std::chrono::ceil<Milliseconds>(*due - administration().now()));
            }
        }
        const Result<News> news = view_.next(longest);
        if (!news) {
            return Status::failed;
        }
        for (const CommandResponse& response : news->responses) {
            accept(response);
        }
        for (Request& request : requests_) {
            update(request.outcome);
        }
        add_bystanders();
        return Status::ok;
    }

    std::vector<CommandOutcome> outcomes() const {
        std::vector<CommandOutcome> outcomes;
        outcomes.reserve(requests_.size());
        for (const Request& request : requests_) {
            outcomes.push_back(request.outcome);
            outcomes.back().shares_id =
                std::count_if(requests_.begin(), requests_.end(), [&](const Request& other) {
                    return other.invocation == request.invocation;
                }) > 1;
        }
        return outcomes;
    }

private:
    Administration& administration() { return view_.administration(); }

    /// @return nothing when the request is not to be sent, or not again
    std::optional<Clock::time_point> due_time(const Request& request) {
        const bool waits =
            request.outcome.receives_commands && request.outcome.alive && !request.outcome.result;
        if (!waits) {
            return std::nullopt;
        }
        return request.sent ? *request.sent + resend_period : administration().now();
    }

    /// Adds a logger. It shares the request of those that share its HOST:APP.
    void add(const LoggerState& logger, bool is_bystander) {
        const Request* shared = find_shared(logger.application);
        const auto next = static_cast<std::int32_t>(requests_.size()) + 1;
        requests_.push_back({.outcome = {.before = logger,
                                         .now = logger,
                                         .result = {},
                                         .message = {},
                                         .is_bystander = is_bystander},
                             .invocation = shared != nullptr ? shared->invocation : next,
                             .sent = shared != nullptr ? shared->sent : std::nullopt});
    }

    void add_bystanders() {
        for (const LoggerState& target : targets_) {
            LoggerTarget sharing;
            sharing.application = {target.application.host_id, target.application.app_id};
            for (const LoggerState& each : view_.loggers(sharing)) {
                // Who publishes a State in another's name obeys no command to that one.
                if (each.application.instance_id != 0 && !is_known(each.application)) {
                    add(each, true);
                }
            }
        }
    }

    bool is_known(const Application& application) const {
        return std::any_of(requests_.begin(), requests_.end(), [&](const Request& request) {
            return request.outcome.before.application == application;
        });
    }

    const Request* find_shared(const Application& application) const {
        const auto found =
            std::find_if(requests_.begin(), requests_.end(), [&](const Request& request) {
                return share_host_and_app(request.outcome.before.application, application);
            });
        return found == requests_.end() ? nullptr : &*found;
    }

    Status send(const Request& request) {
        for (Request& each : requests_) {
            if (each.invocation == request.invocation) {
                each.sent = administration().now();
            }
        }
        return administration().send(request.outcome.before.application, request.invocation,
                                     command_);
    }

    void accept(const CommandResponse& response) {
        if (response.originator != administration().identity()) {
            return;
        }
        for (Request& request : requests_) {
            if (request.invocation == response.invocation &&
                request.outcome.before.application == response.application) {
                request.outcome.result = response.result;
                request.outcome.message = response.message;
            }
        }
    }

    void update(CommandOutcome& outcome) {
        const LoggerState* now = view_.find(outcome.before.application);
        outcome.alive = now != nullptr;
        if (now != nullptr) {
            outcome.now = *now;
        }
    }

    DomainView& view_;
    const std::vector<LoggerState>& targets_;
    const Command& command_;
    std::vector<Request> requests_;
};

}  // namespace

Result<std::vector<CommandOutcome>> run_command(DomainView& view,
                                                const std::vector<LoggerState>& targets,
                                                const Command& command, Milliseconds longest) {
    CommandRound round{view, targets, command};
    const Clock::time_point deadline = view.administration().now() + longest;
    while (!round.is_complete() && !view.administration().interrupted()) {
        const auto left = std::chrono::ceil<Milliseconds>(deadline - view.administration().now());
        if (left.count() <= 0) {
            break;
        }
        if (round.send() == Status::failed || round.receive(left) == Status::failed) {
            return {};
        }
    }
    return round.outcomes();
}

}  // namespace orvane::tools

#include "tools/domain/view.hpp"

#include <algorithm>
#include <set>
#include <utility>

namespace orvane::tools {

DomainView::DomainView(Administration& administration)
    : administration_(administration), last_news_(administration.now()) {}

std::optional<News> DomainView::next(Milliseconds longest) {
    administration_.wait(longest);
    std::optional<Arrivals> arrivals = administration_.take();
    if (!arrivals) {
        return std::nullopt;
    }
    News news{.changes = {}, .answers = std::move(arrivals->answers)};
    for (const StateReport& report : arrivals->states) {
        apply(report, news.changes);
    }
    const std::size_t publishers = administration_.publishers().size();
    if (!news.changes.empty() || publishers != publishers_) {
        last_news_ = administration_.now();
    }
    publishers_ = publishers;
    return news;
}

void DomainView::apply(const StateReport& report, std::vector<LoggerChange>& changes) {
    const auto known = loggers_.find(report.application);
    if (known == loggers_.end()) {
        if (report.state && report.alive) {
            loggers_.emplace(report.application, *report.state);
            changes.push_back({LoggerChange::Kind::appeared, *report.state, *report.state});
        }
        return;
    }
    // The last State and the end may come as one.
    if (report.state && *report.state != known->second) {
        changes.push_back({LoggerChange::Kind::changed, known->second, *report.state});
        known->second = *report.state;
    }
    if (!report.alive) {
        changes.push_back({LoggerChange::Kind::gone, known->second, known->second});
        loggers_.erase(known);
    }
}

DomainView::Milliseconds DomainView::time_to_settle() {
    const std::set<Application> publishers = administration_.publishers();
    const bool all_heard =
        std::all_of(publishers.begin(), publishers.end(),
                    [&](const Application& each) { return loggers_.contains(each); });
    if (!all_heard) {
        return Milliseconds::max();
    }
    return std::chrono::ceil<Milliseconds>(last_news_ + settling_time - administration_.now());
}

bool DomainView::has(const LoggerTarget* target) const {
    return std::any_of(loggers_.begin(), loggers_.end(), [&](const auto& known) {
        return target == nullptr || target->matches(known.second);
    });
}

bool DomainView::discover(const LoggerTarget* target, Milliseconds longest) {
    const bool one_is_meant = target != nullptr && target->application();
    const auto deadline = administration_.now() + longest;
    while (!administration_.interrupted()) {
        const auto left = std::chrono::ceil<Milliseconds>(deadline - administration_.now());
        const Milliseconds quiet = !has(target)   ? Milliseconds::max()
                                   : one_is_meant ? Milliseconds::zero()
                                                  : time_to_settle();
        if (quiet.count() <= 0 || left.count() <= 0) {
            return true;
        }
        if (!next(std::min(left, quiet))) {
            return false;
        }
    }
    return true;
}

const LoggerState* DomainView::find(const Application& application) const {
    const auto known = loggers_.find(application);
    return known == loggers_.end() ? nullptr : &known->second;
}

std::vector<LoggerState> DomainView::loggers() const {
    std::vector<LoggerState> loggers;
    loggers.reserve(loggers_.size());
    for (const auto& [application, state] : loggers_) {
        loggers.push_back(state);
    }
    return loggers;
}

}  // namespace orvane::tools

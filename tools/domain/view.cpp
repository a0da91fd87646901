#include "tools/domain/view.hpp"

#include <algorithm>
#include <set>
#include <utility>

#include "tools/text/time_text.hpp"

namespace orvane::tools {

DomainView::DomainView(Administration& administration, bool is_authenticated)
    : administration_(administration),
      is_authenticated_(is_authenticated),
      last_news_(administration.now()) {}

Result<News> DomainView::next(Milliseconds longest) {
    administration_.wait(longest);
    Result<Arrivals> arrivals = administration_.take();
    if (!arrivals) {
        return {};
    }
    News news{.changes = {}, .responses = std::move(arrivals->responses)};
    for (const auto& [application, process] : arrivals->processes) {
        directory_.add(application, process);
    }
    for (const StateUpdate& update : arrivals->states) {
        heard_.insert(update.writer);
        apply(update, news.changes);
    }
    for (const LoggerStatistics& statistics : arrivals->statistics) {
        apply(statistics);
        news.has_statistics = true;
    }
    const std::set<Application> state_writers = administration_.state_writers();
    std::erase_if(heard_, [&](const Application& each) { return !state_writers.contains(each); });
    if (!news.changes.empty() || state_writers.size() != state_writers_) {
        last_news_ = administration_.now();
    }
    state_writers_ = state_writers.size();
    return news;
}

void DomainView::apply(const StateUpdate& update, std::vector<LoggerChange>& changes) {
    for (LoggerChange& change : live_.apply(update)) {
        directory_.add(change.now);
        if (change.kind == LoggerChange::Kind::gone) {
            directory_.note_end(update.application);
            traffic_.erase(update.application);
        }
        changes.push_back(std::move(change));
    }
}

void DomainView::apply(const LoggerStatistics& statistics) {
    if (statistics.is_last && find(statistics.application) == nullptr) {
        traffic_.erase(statistics.application);
        return;
    }
    const auto [place, is_new] = traffic_.try_emplace(statistics.application);
    LoggerTraffic& known = place->second.known;
    const std::int64_t elapsed = statistics.nanoseconds - known.last.nanoseconds;
    const std::uint64_t logged = statistics.logged() - known.last.logged();
    if (is_new || statistics.writer != known.last.writer) {
        known.rate.reset();
    } else if (elapsed > 0) {
        known.rate = static_cast<double>(logged) * 1e9 / static_cast<double>(elapsed);
    }
    known.last = statistics;
    place->second.received = administration_.now();
}

std::optional<LoggerTraffic> DomainView::traffic_of(const Application& application) const {
    // A logger sends statistics each second as long as they change.
    constexpr Milliseconds unchanged{2500};
    const auto place = traffic_.find(application);
    if (place == traffic_.end()) {
        return std::nullopt;
    }
    LoggerTraffic traffic = place->second.known;
    if (administration_.now() - place->second.received > unchanged) {
        traffic.rate = 0;
    }
    return traffic;
}

DomainView::Milliseconds DomainView::time_to_settle(const LoggerTarget* target) {
    const Application* const one =
        target != nullptr && target->application ? &*target->application : nullptr;
    const std::set<Application> writers = administration_.state_writers();
    const bool all_heard =
        std::all_of(writers.begin(), writers.end(), [&](const Application& each) {
            return heard_.contains(each) || (one != nullptr && !share_host_and_app(*one, each));
        });
    if (!all_heard) {
        return Milliseconds::max();
    }
    if (one != nullptr) {
        return Milliseconds::zero();
    }
    return std::chrono::ceil<Milliseconds>(last_news_ + settling_time - administration_.now());
}

bool DomainView::has(const LoggerTarget* target) const {
    return target == nullptr ? !live_.states().empty() : !loggers(*target).empty();
}

void DomainView::number_anew() {
    LoggerDirectory ordered;
    const auto add = [&](const Application& application, const LoggerState& state) {
        ordered.add(application, directory_.process(application));
        ordered.add(state);
    };
    // Those in another's name come behind all others, so that they take no number from these.
    for (const auto& [application, state] : live_.states()) {
        if (!live_.publisher(application)) {
            add(application, state);
        }
    }
    for (const auto& [application, state] : live_.states()) {
        if (const auto publisher = live_.publisher(application)) {
            add(application, state);
            ordered.add(*publisher, directory_.process(*publisher));
        }
    }
    directory_ = std::move(ordered);
}

Status DomainView::discover(const LoggerTarget* target, Milliseconds longest) {
    const Status status = look_for(target, longest);
    number_anew();
    return status;
}

Status DomainView::look_for(const LoggerTarget* target, Milliseconds longest) {
    const auto deadline = administration_.now() + longest;
    while (!administration_.interrupted()) {
        const auto left = std::chrono::ceil<Milliseconds>(deadline - administration_.now());
        const Milliseconds quiet = has(target) ? time_to_settle(target) : Milliseconds::max();
        if (quiet.count() <= 0 || left.count() <= 0) {
            return Status::ok;
        }
        if (!next(std::min(left, quiet))) {
            return Status::failed;
        }
    }
    return Status::ok;
}

const LoggerState* DomainView::find(const Application& application) const {
    const auto known = live_.states().find(application);
    return known == live_.states().end() ? nullptr : &known->second;
}

bool DomainView::has_the_name_of_another(const Application& application) const {
    return live_.publisher(application) &&
           std::any_of(live_.states().begin(), live_.states().end(), [&](const auto& each) {
               return each.first != application && share_host_and_app(each.first, application);
           });
}

std::vector<LoggerState> DomainView::loggers(const LoggerTarget& target) const {
    std::vector<LoggerState> chosen;
    for (const auto& [application, state] : live_.states()) {
        const bool lives =
            state.state == QEL_KX_STATE_INITIALIZING || state.state == QEL_KX_STATE_OPERATIONAL;
        if (lives && target.matches(directory_.logger(application)) &&
            !has_the_name_of_another(application)) {
            chosen.push_back(state);
        }
    }
    return chosen;
}

std::vector<LoggerState> DomainView::loggers() const {
    std::vector<LoggerState> loggers;
    loggers.reserve(live_.states().size());
    for (const auto& [application, state] : live_.states()) {
        loggers.push_back(state);
    }
    return loggers;
}

std::vector<LoggerEntry> DomainView::entries() const {
    std::vector<LoggerEntry> entries;
    entries.reserve(live_.states().size());
    for (const auto& [application, state] : live_.states()) {
        entries.push_back(
            {.state = state,
             .logger = directory_.logger(application),
             .addresses = directory_.process(application).addresses,
             .traffic = traffic_of(application),
             .publisher = directory_.publisher(live_.publisher(application), is_authenticated_)});
    }
    // Those that share HOST:APP follow each other.
    for (std::size_t i = 1; i < entries.size(); ++i) {
        if (share_host_and_app(entries[i - 1].state.application, entries[i].state.application)) {
            entries[i - 1].shares_id = true;
            entries[i].shares_id = true;
        }
    }
    return entries;
}

LoggerEvent DomainView::event_of(const LoggerChange& change) const {
    return {wall_clock(), change, directory_.logger(change.now.application),
            directory_.publisher(change.publisher, is_authenticated_)};
}

}  // namespace orvane::tools

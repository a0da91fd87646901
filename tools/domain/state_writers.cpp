#include "tools/domain/state_writers.hpp"

#include <cstddef>
#include <limits>

namespace orvane::tools {
namespace {

using Instance = StateSample::Instance;

void keep_matched(std::set<Endpoint>& writers, const std::set<Endpoint>& matched) {
    std::erase_if(writers, [&](const Endpoint& each) { return !matched.contains(each); });
}

}  // namespace

std::vector<StateUpdate> StateWriters::judge(const std::vector<StateSample>& samples,
                                             const std::set<Endpoint>& matched) {
    std::vector<StateUpdate> updates;
    for (const StateSample& sample : samples) {
        const auto place = writers_.try_emplace(sample.application).first;
        if (sample.state) {
            place->second.insert(sample.writer);
        }
        note_end(sample);
        keep_matched(place->second, matched);
        updates.push_back({.application = sample.application,
                           .state = sample.state,
                           .alive = !place->second.empty(),
                           .writer = application_of(sample.writer)});
        if (place->second.empty()) {
            writers_.erase(place);
        }
    }
    for (auto each = writers_.begin(); each != writers_.end();) {
        auto& [application, writers] = *each;
        keep_matched(writers, matched);
        if (writers.empty()) {
            updates.push_back({.application = application, .state = {}, .alive = false});
            each = writers_.erase(each);
        } else {
            ++each;
        }
    }
    return updates;
}

void StateWriters::note_end(const StateSample& sample) {
    if (sample.instance == Instance::alive) {
        return;
    }
    const auto [host, app, instance] = sample.application;
    constexpr std::uint32_t last_instance = std::numeric_limits<std::uint32_t>::max();
    const auto first = writers_.lower_bound({host, app, 0});
    const auto last = writers_.upper_bound({host, app, last_instance});
    std::size_t count = 0;
    for (auto each = first; each != last; ++each) {
        count += each->second.size();
    }
    // A State that had not been taken yet hides who has disposed the instance. It does not matter
    // for a logger, whose writer ends with it. Who publishes in the names of others goes on.
    const bool is_from_disposer = !sample.state || (count == 1 && instance == 0);
    for (auto each = first; each != last; ++each) {
        if (sample.instance == Instance::without_writers) {
            each->second.clear();
        } else if (is_from_disposer) {
            each->second.erase(sample.writer);
        }
    }
}

}  // namespace orvane::tools

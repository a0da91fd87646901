#include "tools/domain/live_loggers.hpp"

namespace orvane::tools {

std::vector<LoggerChange> LiveLoggers::apply(const StateUpdate& update) {
    using Kind = LoggerChange::Kind;
    std::vector<LoggerChange> changes;
    const bool is_own =
        update.writer == Application{} || share_host_and_app(update.application, update.writer);
    if (update.state && update.alive && !is_own) {
        publishers_[update.application] = update.writer;
    }
    const auto publisher = this->publisher(update.application);
    const auto known = states_.find(update.application);
    if (known == states_.end()) {
        if (update.state && update.alive) {
            states_.emplace(update.application, *update.state);
            changes.push_back({Kind::appeared, *update.state, *update.state, publisher});
        }
        return changes;
    }
    // The last State and the end may come as one.
    if (update.state && *update.state != known->second) {
        changes.push_back({Kind::changed, known->second, *update.state, publisher});
        known->second = *update.state;
    }
    if (!update.alive) {
        changes.push_back({Kind::gone, known->second, known->second, publisher});
        states_.erase(known);
        publishers_.erase(update.application);
    }
    return changes;
}

std::optional<Application> LiveLoggers::publisher(const Application& application) const {
    const auto known = publishers_.find(application);
    return known == publishers_.end() ? std::nullopt : std::optional{known->second};
}

}  // namespace orvane::tools

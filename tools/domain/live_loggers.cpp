#include "tools/domain/live_loggers.hpp"

namespace orvane::tools {

std::vector<LoggerChange> LiveLoggers::apply(const StateUpdate& update) {
    using Kind = LoggerChange::Kind;
    std::vector<LoggerChange> changes;
    const auto known = states_.find(update.application);
    if (known == states_.end()) {
        if (update.state && update.alive) {
            states_.emplace(update.application, *update.state);
            changes.push_back({Kind::appeared, *update.state, *update.state});
        }
        return changes;
    }
    // The last State and the end may come as one.
    if (update.state && *update.state != known->second) {
        changes.push_back({Kind::changed, known->second, *update.state});
        known->second = *update.state;
    }
    if (!update.alive) {
        changes.push_back({Kind::gone, known->second, known->second});
        states_.erase(known);
    }
    return changes;
}

}  // namespace orvane::tools

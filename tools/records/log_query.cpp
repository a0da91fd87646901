#include "tools/records/log_query.hpp"

#include <fnmatch.h>

#include <algorithm>

namespace orvane::tools {
namespace {

bool any_matches(const std::vector<LoggerTarget>& targets, const Logger& logger) {
    return std::any_of(targets.begin(), targets.end(),
                       [&](const LoggerTarget& target) { return target.matches(logger); });
}

}  // namespace

bool LogQuery::matches(const MessageEvent& event) const {
    const LogRecord& record = event.record;
    if (level && record.level > *level) {
        return false;
    }
    if (category && fnmatch(category->c_str(), record.category.c_str(), 0) != 0) {
        return false;
    }
    return record.message.find(contains) != std::string::npos && matches(event.logger);
}

bool LogQuery::matches(const Logger& logger) const {
    return (loggers.empty() || any_matches(loggers, logger)) && !any_matches(excluded, logger);
}

}  // namespace orvane::tools

#include "tools/text/shared_ids.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "tools/text/application_text.hpp"
#include "tools/text/logger_name.hpp"

namespace orvane::tools {
namespace {

/// "pump 0a141e28:0000c350:00000007, process 4711 (planner) on host robot2".
std::string description(const Logger& logger) {
    const std::string kind = logger.kind.empty() ? "" : name_of(logger) + ' ';
    const std::string process = process_text(logger);
    return fmt::format("{}{}{}{}", kind, format_instance(logger.application),
                       process.empty() ? "" : ", ", process);
}

std::string sharing_text(const Logger& one, const Logger& other) {
    return fmt::format(
        "two loggers share HOST:APP, and a command to one reaches both: {}; {}. What helps is a "
        "certificate of its own for each application: orvane keys issue",
        description(one), description(other));
}

std::string impersonation_text(const Logger& logger, const Logger& publisher) {
    return fmt::format("a State in the name of {} comes from another application: {}",
                       description(logger), description(publisher));
}

}  // namespace

std::vector<std::string> SharedIds::meet(const Logger& logger,
                                         const std::shared_ptr<const Publisher>& publisher) {
    alive_.insert_or_assign(logger.application, Alive{logger, publisher});
    std::vector<std::string> texts;
    const auto [host, app, instance] = logger.application;
    for (auto each = alive_.lower_bound({host, app, 0});
         each != alive_.end() && share_host_and_app(each->first, logger.application); ++each) {
        const Alive& other = each->second;
        const auto pair = std::minmax(each->first, logger.application);
        if (each->first == logger.application || !told_.insert(pair).second) {
            continue;
        }
        if (publisher) {
            texts.push_back(impersonation_text(other.logger, publisher->logger));
        } else if (other.publisher) {
            texts.push_back(impersonation_text(logger, other.publisher->logger));
        } else {
            texts.push_back(sharing_text(other.logger, logger));
        }
    }
    return texts;
}

std::vector<std::string> SharedIds::note(const LoggerEvent& event) {
    if (event.change.kind != LoggerChange::Kind::gone) {
        return meet(event.logger, event.publisher);
    }
    alive_.erase(event.logger.application);
    return {};
}

}  // namespace orvane::tools

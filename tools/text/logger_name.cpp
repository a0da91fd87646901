#include "tools/text/logger_name.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "tools/text/application_text.hpp"
#include "tools/text/display_text.hpp"

namespace orvane::tools {
namespace {

std::string introduction(const Logger& logger, bool shares_id) {
    const std::string process = process_text(logger);
    return fmt::format(
        "--- {} is {}{}{} ---\n", name_of(logger),
        shares_id ? format_instance(logger.application) : format_application(logger.application),
        process.empty() ? "" : ", ", process);
}

}  // namespace

std::string process_text(const Logger& logger) {
    std::string text;
    if (logger.process_id != 0) {
        text = fmt::format("process {}", logger.process_id);
    }
    if (!logger.process.empty()) {
        text += fmt::format("{}({})", text.empty() ? "" : " ", displayable(logger.process));
    }
    if (!logger.host.empty()) {
        text += fmt::format("{}on host {}", text.empty() ? "" : " ", displayable(logger.host));
    }
    return text;
}

std::string name_of(const Logger& logger) {
    const std::string kind = displayable(logger.kind);
    if (kind.empty()) {
        return format_application(logger.application);
    }
    return logger.number == 1 ? kind : fmt::format("{}#{}", kind, logger.number);
}

std::string via_text(const std::shared_ptr<const Publisher>& publisher) {
    return publisher && publisher->is_authenticated ? " via " + name_of(publisher->logger)
                                                    : std::string{};
}

std::string loss_text(const LossEvent& loss) {
    const struct {
        std::uint64_t count;
        std::string_view cause;
    } causes[] = {
        {loss.queue_full, "queue full"},
        {loss.no_memory, "no memory"},
        {loss.discarded, "discarded"},
        {loss.on_the_way, "on the way"},
    };
    std::string list;
    for (const auto& each : causes) {
        if (each.count > 0) {
            list += fmt::format("{} {} {}", list.empty() ? ":" : ",", each.count, each.cause);
        }
    }
    return fmt::format("{} message{} of {} lost{}", loss.lost(), loss.lost() == 1 ? "" : "s",
                       name_of(loss.logger), list);
}

std::string loss_line(const LossEvent& loss) {
    return fmt::format("--- {} ---\n", loss_text(loss));
}

std::string gap_line(const RecordingGap& gap) {
    return fmt::format("--- {} event{} not in the recording ---\n", gap.events,
                       gap.events == 1 ? " is" : "s are");
}

std::string Introductions::meet(const Logger& logger) {
    Kind& kind = kinds_[logger.kind];
    if (logger.kind.empty() || !kind.met.insert(logger.application).second) {
        return {};
    }
    kind.is_ambiguous |= logger.number > 1;
    kind.untold.push_back(logger);
    std::string lines;
    if (kind.is_ambiguous) {
        for (const Logger& each : kind.untold) {
            const auto sharing = std::count_if(
                kind.met.begin(), kind.met.end(),
                [&](const Application& met) { return share_host_and_app(met, each.application); });
            lines += introduction(each, sharing > 1);
        }
        kind.untold.clear();
    }
    return lines;
}

}  // namespace orvane::tools

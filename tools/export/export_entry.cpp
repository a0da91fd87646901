#include "tools/export/export_entry.hpp"

#include <fmt/format.h>

#include <variant>

#include "orvane/core.h"
#include "tools/text/logger_name.hpp"
#include "tools/text/logger_text.hpp"

namespace orvane::tools {
namespace {

ExportEntry entry_of(const MessageEvent& event) {
    return {.nanoseconds = event.record.nanoseconds,
            .level = event.record.level,
            .category = event.record.category,
            .text = event.record.message,
            .logger = &event.logger,
            .publisher = event.publisher.get()};
}

ExportEntry entry_of(const LossEvent& event) {
    return {.nanoseconds = event.nanoseconds,
            .level = QEL_KX_LEVEL_WARNING,
            .text = loss_text(event),
            .logger = &event.logger,
            .event = "loss",
            .numbers = {{"lost", event.lost()},
                        {"queue_full", event.queue_full},
                        {"no_memory", event.no_memory},
                        {"discarded", event.discarded},
                        {"on_the_way", event.on_the_way}}};
}

ExportEntry entry_of(const LoggerEvent& event) {
    const bool is_lost = event.change.kind == LoggerChange::Kind::gone &&
                         event.change.now.state != QEL_KX_STATE_NONOPERATIONAL;
    return {.nanoseconds = event.nanoseconds,
            .level = is_lost ? QEL_KX_LEVEL_WARNING : QEL_KX_LEVEL_INFO,
            .text = fmt::format("{} {}: {}", name_of(event.logger), event_name(event.change.kind),
                                change_text(event)),
            .logger = &event.logger,
            .event = event_name(event.change.kind)};
}

ExportEntry entry_of(const RecordingGap& event) {
    return {.nanoseconds = event.nanoseconds,
            .level = QEL_KX_LEVEL_WARNING,
            .text = fmt::format("{} record{} given up by orvane export", event.events,
                                event.events == 1 ? "" : "s"),
            .event = "gap",
            .numbers = {{"given_up", event.events}}};
}

}  // namespace

ExportEntry entry_of(const RecordedEvent& event) {
    return std::visit([](const auto& each) { return entry_of(each); }, event);
}

}  // namespace orvane::tools

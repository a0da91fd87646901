#pragma once

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "tools/records/recorded_event.hpp"
#include "tools/text/json_line.hpp"

namespace orvane::tools {

// 2026-01-31 12:00:00 UTC.
constexpr std::int64_t noon = 1'769'860'800'000'000'000;

inline Logger sample_logger() {
    return {.application = {0x0a141e28, 0xc350},
            .kind = "pump",
            .number = 2,
            .host = "boat",
            .process = "pumpd",
            .process_id = 4711};
}

inline MessageEvent message_event(std::int64_t nanoseconds, std::string message) {
    return {.record = {.nanoseconds = nanoseconds,
                       .application = sample_logger().application,
                       .level = 400,
                       .category = "hydraulics",
                       .message = std::move(message)},
            .logger = sample_logger()};
}

/// A message in the name of one of several loggers that share HOST:APP.
inline MessageEvent forged_message() {
    MessageEvent event = message_event(noon + 5, "off");
    event.logger.application.instance_id = 0xffffffff;
    Logger planner{{3, 2, 1}, "planner", 1, "", "", 7};
    event.publisher = std::make_shared<Publisher>(Publisher{std::move(planner), true});
    return event;
}

/// Events of all kinds, with the smallest and the largest that their members can be.
inline std::vector<RecordedEvent> sample_events() {
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    MessageEvent unknown = message_event(std::numeric_limits<std::int64_t>::min(), "");
    unknown.record.level = std::numeric_limits<std::int32_t>::min();
    unknown.record.application = {0, 0xffffffff};
    unknown.logger = {};
    unknown.logger.application = unknown.record.application;
    LoggerState before;
    before.application = sample_logger().application;
    before.kind = sample_logger().kind;
    before.state = QEL_KX_STATE_OPERATIONAL;
    before.filter_level = 600;
    before.verbosities.fill(QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_ERROR);
    LoggerState now = before;
    now.state = QEL_KX_STATE_SHUTTING_DOWN;
    now.filter_level = 0;
    now.domain_id = -7;
    now.verbosities[4] = QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_STATUS_ALL;
    now.print_format = QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_MAXIMAL;
    return {
        LoggerEvent{noon, {LoggerChange::Kind::appeared, before, before}, sample_logger()},
        message_event(noon + 1, "pressure high"),
        message_event(std::numeric_limits<std::int64_t>::max(), std::string(4096, '\x01')),
        message_event(-1, std::string("\xff\0 a \"quoted\"\n\u00fc", 17)),
        unknown,
        LossEvent{noon, sample_logger(), most - 6, 1, 2, 3},
        LoggerEvent{noon + 2, {LoggerChange::Kind::changed, before, now}, sample_logger()},
        LoggerEvent{noon + 3, {LoggerChange::Kind::gone, now, now}, sample_logger()},
        RecordingGap{noon + 4, most},
        forged_message(),
    };
}

/// The events as text, so that they can be compared.
inline std::vector<std::string> lines_of(const std::vector<RecordedEvent>& events) {
    std::vector<std::string> lines;
    for (const RecordedEvent& event : events) {
        lines.push_back(json_line(event));
    }
    return lines;
}

}  // namespace orvane::tools

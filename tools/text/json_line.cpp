#include "tools/text/json_line.hpp"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <utility>
#include <variant>

#include "orvane/core.h"
#include "tools/text/application_text.hpp"
#include "tools/text/json_object.hpp"
#include "tools/text/level_names.hpp"
#include "tools/text/logger_name.hpp"
#include "tools/text/logger_text.hpp"
#include "tools/text/setting_names.hpp"
#include "tools/text/settings_text.hpp"
#include "tools/text/time_text.hpp"

namespace orvane::tools {
namespace {

std::string line_of(JsonObject object) {
    std::string line = object.take();
    line += '\n';
    return line;
}

std::string lower_case(std::string_view name) {
    std::string text{name};
    std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
        return static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    });
    return text;
}

void fill_identity(JsonObject& object, const Logger& logger) {
    object.add("app", format_application(logger.application));
    object.add("host_id", logger.application.host_id);
    object.add("app_id", logger.application.app_id);
    if (logger.application.instance_id != 0) {
        object.add("instance_id", logger.application.instance_id);
    }
    object.add("kind", logger.kind);
    if (logger.number != 1) {
        object.add("number", logger.number);
    }
    object.add("host", logger.host);
    object.add("process", logger.process);
    object.add("pid", logger.process_id);
}

void fill_publisher(JsonObject& object, const std::shared_ptr<const Publisher>& publisher) {
    if (publisher) {
        JsonObject member;
        fill_identity(member, publisher->logger);
        member.add("authenticated", publisher->is_authenticated);
        object.add("publisher", std::move(member));
    }
}

void fill_traffic(JsonObject& object, const LoggerTraffic& traffic) {
    const LoggerStatistics& last = traffic.last;
    object.add("accepted", last.accepted);
    object.add("published", last.now.published);
    object.add("queue_full", last.now.queue_full);
    object.add("no_memory", last.now.no_memory);
    object.add("discarded", last.now.discarded);
    object.add("queued", last.queued);
    object.add("most_queued", last.most_queued);
    object.add("queue_size", last.queue_size);
    if (traffic.rate) {
        object.add("rate", *traffic.rate);
    }
}

void fill_settings(JsonObject& object, const LoggerState& state) {
    object.add("state", state_name(state.state));
    object.add("filter_level", state.filter_level);
    object.add("filter_level_name", filter_level_text(state.filter_level));
    object.add("domain", state.domain_id);
    JsonObject verbosities;
    for (std::size_t category = 0; category < state.verbosities.size(); ++category) {
        verbosities.add(
            lower_case(middleware_category_name(static_cast<MiddlewareCategory>(category))),
            verbosity_name(state.verbosities[category]));
    }
    object.add("verbosities", std::move(verbosities));
    object.add("print_format", print_format_name(state.print_format));
}

void fill_event(JsonObject& object, const char* type, std::int64_t nanoseconds) {
    object.add("type", type);
    object.add("time", json_time(nanoseconds));
}

/// Fills in what stands between the level and the text.
void fill_message(JsonObject& object, const MessageEvent& event) {
    object.add("level_name", level_text(event.record.level));
    fill_identity(object, event.logger);
    object.add("category", event.record.category);
    fill_publisher(object, event.publisher);
}

JsonObject json_of(const MessageEvent& event) {
    JsonObject object;
    fill_event(object, "message", event.record.nanoseconds);
    object.add("level", event.record.level);
    fill_message(object, event);
    object.add("message", event.record.message);
    return object;
}

JsonObject json_of(const LossEvent& event) {
    JsonObject object;
    fill_event(object, "loss", event.nanoseconds);
    fill_identity(object, event.logger);
    object.add("lost", event.lost());
    object.add("queue_full", event.queue_full);
    object.add("no_memory", event.no_memory);
    object.add("discarded", event.discarded);
    object.add("on_the_way", event.on_the_way);
    return object;
}

JsonObject json_of(const LoggerEvent& event) {
    JsonObject object;
    fill_event(object, "logger", event.nanoseconds);
    object.add("event", event_name(event.change.kind));
    fill_identity(object, event.logger);
    fill_publisher(object, event.publisher);
    fill_settings(object, event.change.now);
    if (event.change.kind == LoggerChange::Kind::changed) {
        JsonObject before;
        before.add("kind", event.change.before.kind);
        fill_settings(before, event.change.before);
        object.add("before", std::move(before));
    }
    return object;
}

JsonObject json_of(const RecordingGap& event) {
    JsonObject object;
    fill_event(object, "gap", event.nanoseconds);
    object.add("events", event.events);
    return object;
}

/// A level of the schema foxglove.Log.
int foxglove_level(std::int32_t level) {
    static constexpr struct {
        std::int32_t least_severe;
        int level;
    } levels[] = {{QEL_KX_LEVEL_FATAL, 5},
                  {QEL_KX_LEVEL_ERROR, 4},
                  {QEL_KX_LEVEL_WARNING, 3},
                  {QEL_KX_LEVEL_INFO, 2}};
    constexpr int debug = 1;
    const auto* const found = std::find_if(std::begin(levels), std::end(levels),
                                           [&](auto& each) { return level <= each.least_severe; });
    return found == std::end(levels) ? debug : found->level;
}

/// "pump#2 hydraulics".
std::string foxglove_name(const MessageEvent& event) {
    const std::string name = name_of(event.logger) + via_text(event.publisher);
    return event.record.category.empty() ? name : name + ' ' + event.record.category;
}

JsonObject foxglove_object(const MessageEvent& event) {
    constexpr std::int64_t second = 1'000'000'000;
    // The schema has no times before 1970.
    const std::int64_t time = std::max<std::int64_t>(event.record.nanoseconds, 0);
    JsonObject object;
    JsonObject timestamp;
    timestamp.add("sec", time / second);
    timestamp.add("nsec", time % second);
    object.add("timestamp", std::move(timestamp));
    object.add("level", foxglove_level(event.record.level));
    object.add("message", event.record.message);
    object.add("name", foxglove_name(event));
    object.add("file", "");
    object.add("line", 0);
    fill_event(object, "message", event.record.nanoseconds);
    object.add("orvane_level", event.record.level);
    fill_message(object, event);
    return object;
}

template <typename Other>
JsonObject foxglove_object(const Other& event) {
    return json_of(event);
}

}  // namespace

std::string json_line(const MessageEvent& event) {
    return line_of(json_of(event));
}

std::string json_line(const LossEvent& event) {
    return line_of(json_of(event));
}

std::string json_line(const LoggerEvent& event) {
    return line_of(json_of(event));
}

std::string json_line(const RecordingGap& event) {
    return line_of(json_of(event));
}

std::string json_line(const RecordedEvent& event) {
    return std::visit([](const auto& each) { return json_line(each); }, event);
}

std::string json_line(const LoggerEntry& entry) {
    JsonObject object;
    fill_identity(object, entry.logger);
    if (entry.shares_id) {
        object.add("shares_id", true);
    }
    fill_publisher(object, entry.publisher);
    fill_settings(object, entry.state);
    object.add("addresses", entry.addresses);
    if (entry.traffic) {
        JsonObject statistics;
        fill_traffic(statistics, *entry.traffic);
        object.add("statistics", std::move(statistics));
    }
    return line_of(std::move(object));
}

std::string foxglove_json(const RecordedEvent& event) {
    return std::visit([](const auto& each) { return foxglove_object(each).take(); }, event);
}

}  // namespace orvane::tools

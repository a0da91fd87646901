#include "tools/text/json_line.hpp"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string_view>
#include <variant>

#include "orvane/core.h"
#include "tools/text/application_text.hpp"
#include "tools/text/level_names.hpp"
#include "tools/text/logger_name.hpp"
#include "tools/text/logger_text.hpp"
#include "tools/text/setting_names.hpp"
#include "tools/text/settings_text.hpp"
#include "tools/text/time_text.hpp"

namespace orvane::tools {
namespace {

std::string text_of(const nlohmann::ordered_json& value) {
    constexpr bool escape_beyond_ascii = true;
    return value.dump(-1, ' ', escape_beyond_ascii,
                      nlohmann::ordered_json::error_handler_t::replace);
}

std::string line_of(const nlohmann::ordered_json& value) {
    return text_of(value) + '\n';
}

std::string lower_case(std::string_view name) {
    std::string text{name};
    std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
        return static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    });
    return text;
}

void fill_identity(nlohmann::ordered_json& object, const Logger& logger) {
    object["app"] = format_application(logger.application);
    object["host_id"] = logger.application.host_id;
    object["app_id"] = logger.application.app_id;
    object["kind"] = logger.kind;
    if (logger.number != 1) {
        object["number"] = logger.number;
    }
    object["host"] = logger.host;
    object["process"] = logger.process;
    object["pid"] = logger.process_id;
}

void fill_traffic(nlohmann::ordered_json& object, const LoggerTraffic& traffic) {
    const LoggerStatistics& last = traffic.last;
    object["accepted"] = last.accepted;
    object["published"] = last.now.published;
    object["queue_full"] = last.now.queue_full;
    object["no_memory"] = last.now.no_memory;
    object["discarded"] = last.now.discarded;
    object["queued"] = last.queued;
    object["most_queued"] = last.most_queued;
    object["queue_size"] = last.queue_size;
    if (traffic.rate) {
        object["rate"] = *traffic.rate;
    }
}

void fill_settings(nlohmann::ordered_json& object, const LoggerState& state) {
    object["state"] = state_name(state.state);
    object["filter_level"] = state.filter_level;
    object["filter_level_name"] = filter_level_text(state.filter_level);
    object["domain"] = state.domain_id;
    nlohmann::ordered_json& verbosities = object["verbosities"];
    for (std::size_t category = 0; category < state.verbosities.size(); ++category) {
        verbosities[lower_case(
            middleware_category_name(static_cast<MiddlewareCategory>(category)))] =
            verbosity_name(state.verbosities[category]);
    }
    object["print_format"] = print_format_name(state.print_format);
}

nlohmann::ordered_json begin_event(const char* type, std::int64_t nanoseconds) {
    nlohmann::ordered_json object;
    object["type"] = type;
    object["time"] = json_time(nanoseconds);
    return object;
}

/// Fills in what stands between the level and the text.
void fill_message(nlohmann::ordered_json& object, const MessageEvent& event) {
    object["level_name"] = level_text(event.record.level);
    fill_identity(object, event.logger);
    object["category"] = event.record.category;
}

nlohmann::ordered_json json_of(const MessageEvent& event) {
    nlohmann::ordered_json object = begin_event("message", event.record.nanoseconds);
    object["level"] = event.record.level;
    fill_message(object, event);
    object["message"] = event.record.message;
    return object;
}

nlohmann::ordered_json json_of(const LossEvent& event) {
    nlohmann::ordered_json object = begin_event("loss", event.nanoseconds);
    fill_identity(object, event.logger);
    object["lost"] = event.lost();
    object["queue_full"] = event.queue_full;
    object["no_memory"] = event.no_memory;
    object["discarded"] = event.discarded;
    object["on_the_way"] = event.on_the_way;
    return object;
}

nlohmann::ordered_json json_of(const LoggerEvent& event) {
    nlohmann::ordered_json object = begin_event("logger", event.nanoseconds);
    object["event"] = event_name(event.change.kind);
    fill_identity(object, event.logger);
    fill_settings(object, event.change.now);
    if (event.change.kind == LoggerChange::Kind::changed) {
        nlohmann::ordered_json& before = object["before"];
        before["kind"] = event.change.before.kind;
        fill_settings(before, event.change.before);
    }
    return object;
}

nlohmann::ordered_json json_of(const RecordingGap& event) {
    nlohmann::ordered_json object = begin_event("gap", event.nanoseconds);
    object["events"] = event.events;
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
    const std::string name = name_of(event.logger);
    return event.record.category.empty() ? name : name + ' ' + event.record.category;
}

nlohmann::ordered_json foxglove_object(const MessageEvent& event) {
    constexpr std::int64_t second = 1'000'000'000;
    // The schema has no times before 1970.
    const std::int64_t time = std::max<std::int64_t>(event.record.nanoseconds, 0);
    nlohmann::ordered_json object;
    object["timestamp"] = {{"sec", time / second}, {"nsec", time % second}};
    object["level"] = foxglove_level(event.record.level);
    object["message"] = event.record.message;
    object["name"] = foxglove_name(event);
    object["file"] = "";
    object["line"] = 0;
    object.update(begin_event("message", event.record.nanoseconds));
    object["orvane_level"] = event.record.level;
    fill_message(object, event);
    return object;
}

template <typename Other>
nlohmann::ordered_json foxglove_object(const Other& event) {
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
    nlohmann::ordered_json object;
    fill_identity(object, entry.logger);
    fill_settings(object, entry.state);
    object["addresses"] = entry.addresses;
    if (entry.traffic) {
        fill_traffic(object["statistics"], *entry.traffic);
    }
    return line_of(object);
}

std::string foxglove_json(const RecordedEvent& event) {
    return text_of(std::visit([](const auto& each) { return foxglove_object(each); }, event));
}

}  // namespace orvane::tools

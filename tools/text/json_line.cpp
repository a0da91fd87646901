#include "tools/text/json_line.hpp"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <string_view>

#include "tools/text/application_text.hpp"
#include "tools/text/level_names.hpp"
#include "tools/text/logger_text.hpp"
#include "tools/text/setting_names.hpp"
#include "tools/text/settings_text.hpp"
#include "tools/text/time_text.hpp"

namespace orvane::tools {
namespace {

std::string line_of(const nlohmann::ordered_json& value) {
    constexpr bool escape_beyond_ascii = true;
    return value.dump(-1, ' ', escape_beyond_ascii,
                      nlohmann::ordered_json::error_handler_t::replace) +
           '\n';
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

void fill_json(nlohmann::ordered_json& object, const LoggerState& state, const Logger& logger) {
    fill_identity(object, logger);
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

}  // namespace

std::string json_line(const MessageEvent& event) {
    const LogRecord& record = event.record;
    nlohmann::ordered_json object;
    object["type"] = "message";
    object["time"] = json_time(record.nanoseconds);
    object["level"] = record.level;
    object["level_name"] = level_text(record.level);
    fill_identity(object, event.logger);
    object["category"] = record.category;
    object["message"] = record.message;
    return line_of(object);
}

std::string json_line(const LossEvent& event) {
    nlohmann::ordered_json object;
    object["type"] = "loss";
    object["time"] = json_time(event.nanoseconds);
    fill_identity(object, event.logger);
    object["lost"] = event.lost();
    object["queue_full"] = event.queue_full;
    object["no_memory"] = event.no_memory;
    object["discarded"] = event.discarded;
    object["on_the_way"] = event.on_the_way;
    return line_of(object);
}

std::string json_line(const LoggerEntry& entry) {
    nlohmann::ordered_json object;
    fill_json(object, entry.state, entry.logger);
    object["addresses"] = entry.addresses;
    return line_of(object);
}

std::string json_line(const LoggerEvent& event) {
    nlohmann::ordered_json object;
    object["type"] = "logger";
    object["time"] = json_time(event.nanoseconds);
    object["event"] = event_name(event.change.kind);
    fill_json(object, event.change.now, event.logger);
    return line_of(object);
}

}  // namespace orvane::tools

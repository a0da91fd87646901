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

void fill_json(nlohmann::ordered_json& object, const LoggerState& logger) {
    object["app"] = format_application(logger.application);
    object["host_id"] = logger.application.host_id;
    object["app_id"] = logger.application.app_id;
    object["kind"] = logger.kind;
    object["state"] = state_name(logger.state);
    object["filter_level"] = logger.filter_level;
    object["filter_level_name"] = filter_level_text(logger.filter_level);
    object["domain"] = logger.domain_id;
    nlohmann::ordered_json& verbosities = object["verbosities"];
    for (std::size_t category = 0; category < logger.verbosities.size(); ++category) {
        verbosities[lower_case(
            middleware_category_name(static_cast<MiddlewareCategory>(category)))] =
            verbosity_name(logger.verbosities[category]);
    }
    object["print_format"] = print_format_name(logger.print_format);
}

}  // namespace

std::string json_line(const LogRecord& record) {
    nlohmann::ordered_json object;
    object["time"] = json_time(record.nanoseconds);
    object["level"] = record.level;
    object["level_name"] = level_text(record.level);
    object["app"] = format_application(record.application);
    object["host_id"] = record.application.host_id;
    object["app_id"] = record.application.app_id;
    object["category"] = record.category;
    object["message"] = record.message;
    return line_of(object);
}

std::string json_line(const LoggerState& logger) {
    nlohmann::ordered_json object;
    fill_json(object, logger);
    return line_of(object);
}

std::string json_line(const LoggerChange& change, std::int64_t nanoseconds) {
    nlohmann::ordered_json object;
    object["event"] = event_name(change.kind);
    object["time"] = json_time(nanoseconds);
    fill_json(object, change.now);
    return line_of(object);
}

}  // namespace orvane::tools

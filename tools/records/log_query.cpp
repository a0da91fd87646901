#include "tools/records/log_query.hpp"

#include <fmt/format.h>
#include <fnmatch.h>

#include "orvane/core.h"
#include "tools/text/named_numbers.hpp"

namespace orvane::tools {
namespace {

constexpr NamedNumber named_levels[] = {
    {"FATAL", QEL_KX_LEVEL_FATAL},   {"SEVERE", QEL_KX_LEVEL_SEVERE},
    {"ERROR", QEL_KX_LEVEL_ERROR},   {"WARNING", QEL_KX_LEVEL_WARNING},
    {"NOTICE", QEL_KX_LEVEL_NOTICE}, {"INFO", QEL_KX_LEVEL_INFO},
    {"DEBUG", QEL_KX_LEVEL_DEBUG},   {"TRACE", QEL_KX_LEVEL_TRACE},
};

}  // namespace

std::optional<std::int32_t> parse_level(std::string_view text) {
    const auto named = number_of_name(named_levels, text);
    return named ? named : parse_number<std::int32_t>(text, 10);
}

std::string_view level_name(std::int32_t level) {
    return name_of_number(named_levels, level);
}

std::string level_text(std::int32_t level) {
    const std::string_view name = level_name(level);
    return name.empty() ? std::to_string(level) : std::string{name};
}

std::string level_names() {
    return names_of(named_levels);
}

std::optional<Application> parse_application(std::string_view text) {
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos) {
        return std::nullopt;
    }
    const auto host = parse_number<std::uint32_t>(text.substr(0, colon), 16);
    const auto app = parse_number<std::uint32_t>(text.substr(colon + 1), 16);
    if (!host || !app) {
        return std::nullopt;
    }
    return Application{*host, *app};
}

std::string format_application(const Application& application) {
    return fmt::format("{:08x}:{:08x}", application.host_id, application.app_id);
}

bool LogQuery::matches(const LogRecord& record) const {
    if (level && record.level > *level) {
        return false;
    }
    if (application && record.application != *application) {
        return false;
    }
    if (category && fnmatch(category->c_str(), record.category.c_str(), 0) != 0) {
        return false;
    }
    return record.message.find(contains) != std::string::npos;
}

}  // namespace orvane::tools

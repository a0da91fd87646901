#include "tools/log_query.hpp"

#include <fmt/format.h>
#include <fnmatch.h>
#include <strings.h>

#include <algorithm>
#include <charconv>
#include <iterator>

#include "orvane/core.h"

namespace orvane::tools {
namespace {

struct NamedLevel {
    std::string_view name;
    std::int32_t number;
};

constexpr NamedLevel named_levels[] = {
    {"FATAL", QEL_KX_LEVEL_FATAL},   {"SEVERE", QEL_KX_LEVEL_SEVERE},
    {"ERROR", QEL_KX_LEVEL_ERROR},   {"WARNING", QEL_KX_LEVEL_WARNING},
    {"NOTICE", QEL_KX_LEVEL_NOTICE}, {"INFO", QEL_KX_LEVEL_INFO},
    {"DEBUG", QEL_KX_LEVEL_DEBUG},   {"TRACE", QEL_KX_LEVEL_TRACE},
};

template <typename Number>
std::optional<Number> parse_number(std::string_view text, int base) {
    Number number{};
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, base);
    if (error != std::errc{} || stop != end) {
        return std::nullopt;
    }
    return number;
}

bool equal_in_any_case(std::string_view left, std::string_view right) {
    return left.size() == right.size() && strncasecmp(left.data(), right.data(), left.size()) == 0;
}

}  // namespace

std::optional<std::int32_t> parse_level(std::string_view text) {
    const auto* named =
        std::find_if(std::begin(named_levels), std::end(named_levels),
                     [&](const NamedLevel& level) { return equal_in_any_case(level.name, text); });
    if (named != std::end(named_levels)) {
        return named->number;
    }
    return parse_number<std::int32_t>(text, 10);
}

std::string_view level_name(std::int32_t level) {
    const auto* named =
        std::find_if(std::begin(named_levels), std::end(named_levels),
                     [&](const NamedLevel& candidate) { return candidate.number == level; });
    return named == std::end(named_levels) ? std::string_view{} : named->name;
}

std::string level_names() {
    std::string names;
    for (const NamedLevel& level : named_levels) {
        names += names.empty() ? "" : ", ";
        names += level.name;
    }
    return names;
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

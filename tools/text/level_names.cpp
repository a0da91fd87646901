#include "tools/text/level_names.hpp"

#include "orvane/core.h"
#include "tools/text/named_numbers.hpp"

namespace orvane::tools {
namespace {

constexpr NamedNumber levels_of_filters[] = {
    {"SILENT", QEL_KX_LEVEL_SILENT},   {"FATAL", QEL_KX_LEVEL_FATAL},
    {"SEVERE", QEL_KX_LEVEL_SEVERE},   {"ERROR", QEL_KX_LEVEL_ERROR},
    {"WARNING", QEL_KX_LEVEL_WARNING}, {"NOTICE", QEL_KX_LEVEL_NOTICE},
    {"INFO", QEL_KX_LEVEL_INFO},       {"DEBUG", QEL_KX_LEVEL_DEBUG},
    {"TRACE", QEL_KX_LEVEL_TRACE},
};
/// No message has the level SILENT.
constexpr NamedNumbers levels_of_messages = NamedNumbers{levels_of_filters}.subspan(1);

std::optional<std::int32_t> parse(NamedNumbers names, std::string_view text) {
    const auto named = number_of_name(names, text);
    return named ? named : parse_number<std::int32_t>(text, 10);
}

std::string text_of(NamedNumbers names, std::int32_t level) {
    const std::string_view name = name_of_number(names, level);
    return name.empty() ? std::to_string(level) : std::string{name};
}

}  // namespace

std::optional<std::int32_t> parse_level(std::string_view text) {
    return parse(levels_of_messages, text);
}

std::string level_text(std::int32_t level) {
    return text_of(levels_of_messages, level);
}

std::string level_names() {
    return names_of(levels_of_messages);
}

std::optional<std::int32_t> parse_filter_level(std::string_view text) {
    const auto level = parse(levels_of_filters, text);
    return level && *level >= QEL_KX_LEVEL_SILENT ? level : std::nullopt;
}

std::string filter_level_text(std::int32_t level) {
    return text_of(levels_of_filters, level);
}

std::string filter_level_names() {
    return names_of(levels_of_filters);
}

}  // namespace orvane::tools

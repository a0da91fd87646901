#include "tools/text/setting_names.hpp"

#include "tools/text/named_numbers.hpp"

namespace orvane::tools {
namespace {

constexpr NamedNumber states[] = {
    {"INITIALIZING", QEL_KX_STATE_INITIALIZING},
    {"OPERATIONAL", QEL_KX_STATE_OPERATIONAL},
    {"NONOPERATIONAL", QEL_KX_STATE_NONOPERATIONAL},
    {"SHUTTING_DOWN", QEL_KX_STATE_SHUTTING_DOWN},
};
constexpr NamedNumber categories[] = {
    {"PLATFORM", QEL_KX_PEXA_CONFIG_LOG_CATEGORY_PLATFORM},
    {"COMMUNICATION", QEL_KX_PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION},
    {"DATABASE", QEL_KX_PEXA_CONFIG_LOG_CATEGORY_DATABASE},
    {"ENTITIES", QEL_KX_PEXA_CONFIG_LOG_CATEGORY_ENTITIES},
    {"API", QEL_KX_PEXA_CONFIG_LOG_CATEGORY_API},
};
constexpr NamedNumber verbosities[] = {
    {"SILENT", QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_SILENT},
    {"ERROR", QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_ERROR},
    {"WARNING", QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_WARNING},
    {"STATUS_LOCAL", QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_STATUS_LOCAL},
    {"STATUS_REMOTE", QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_STATUS_REMOTE},
    {"STATUS_ALL", QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_STATUS_ALL},
};
constexpr NamedNumber print_formats[] = {
    {"DEFAULT", QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_DEFAULT},
    {"TIMESTAMPED", QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_TIMESTAMPED},
    {"VERBOSE", QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_VERBOSE},
    {"VERBOSE_TIMESTAMPED", QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_VERBOSE_TIMESTAMPED},
    {"DEBUG", QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_DEBUG},
    {"MINIMAL", QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_MINIMAL},
    {"MAXIMAL", QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_MAXIMAL},
};

template <typename Enumeration>
std::optional<Enumeration> parse(NamedNumbers numbers, std::string_view text) {
    const auto number = number_of_text(numbers, text);
    return number ? std::optional{static_cast<Enumeration>(*number)} : std::nullopt;
}

}  // namespace

std::optional<MiddlewareCategory> parse_middleware_category(std::string_view text) {
    return parse<MiddlewareCategory>(categories, text);
}

std::string_view middleware_category_name(MiddlewareCategory category) {
    return name_of_number(categories, category);
}

std::string middleware_category_names() {
    return names_of(categories);
}

std::optional<Verbosity> parse_verbosity(std::string_view text) {
    return parse<Verbosity>(verbosities, text);
}

std::string_view verbosity_name(Verbosity verbosity) {
    return name_of_number(verbosities, verbosity);
}

std::string verbosity_names() {
    return names_of(verbosities);
}

std::optional<PrintFormat> parse_print_format(std::string_view text) {
    return parse<PrintFormat>(print_formats, text);
}

std::string_view print_format_name(PrintFormat format) {
    return name_of_number(print_formats, format);
}

std::string print_format_names() {
    return names_of(print_formats);
}

std::optional<StateKind> parse_state(std::string_view text) {
    return parse<StateKind>(states, text);
}

std::string_view state_name(StateKind state) {
    return name_of_number(states, state);
}

std::string state_names() {
    return names_of(states);
}

}  // namespace orvane::tools

#include "tools/text/application_text.hpp"

#include <fmt/compile.h>

#include <iterator>

#include "tools/text/named_numbers.hpp"

namespace orvane::tools {

std::optional<Application> parse_application(std::string_view text) {
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos) {
        return std::nullopt;
    }
    const auto host = parse_number<std::uint32_t>(text.substr(0, colon), 16);
    std::string_view rest = text.substr(colon + 1);
    std::optional<std::uint32_t> instance = 0;
    if (const std::size_t second = rest.find(':'); second != std::string_view::npos) {
        instance = parse_number<std::uint32_t>(rest.substr(second + 1), 16);
        rest = rest.substr(0, second);
    }
    const auto app = parse_number<std::uint32_t>(rest, 16);
    if (!host || !app || !instance) {
        return std::nullopt;
    }
    return Application{*host, *app, *instance};
}

std::string format_application(const Application& application) {
    return fmt::format(FMT_COMPILE("{:08x}:{:08x}"), application.host_id, application.app_id);
}

std::string format_instance(const Application& application) {
    std::string text = format_application(application);
    if (application.instance_id != 0) {
        fmt::format_to(std::back_inserter(text), FMT_COMPILE(":{:08x}"), application.instance_id);
    }
    return text;
}

}  // namespace orvane::tools

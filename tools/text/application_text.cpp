#include "tools/text/application_text.hpp"

#include <fmt/compile.h>

#include "tools/text/named_numbers.hpp"

namespace orvane::tools {

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
    return fmt::format(FMT_COMPILE("{:08x}:{:08x}"), application.host_id, application.app_id);
}

}  // namespace orvane::tools

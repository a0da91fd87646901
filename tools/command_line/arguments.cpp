#include "tools/command_line/arguments.hpp"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <charconv>
#include <string>
#include <system_error>

#include "tools/text/target_text.hpp"

namespace orvane::tools {

LoggerTarget require_target(const std::string& text) {
    std::string error;
    const std::optional<LoggerTarget> target = parse_target(text, error);
    if (!target) {
        throw CLI::ValidationError(error);
    }
    return *target;
}

void add_domain_option(CLI::App& command, std::int32_t& domain_id) {
    command.add_option("--domain", domain_id, "DDS domain, 0 to 232")
        ->type_name("N")
        ->check(CLI::Range(0, 232).description(""))
        ->capture_default_str();
}

void add_timeout_option(CLI::App& command, double& seconds, const std::string& description) {
    command.add_option("--timeout", seconds, description)
        ->type_name("SECONDS")
        ->check(seconds_validator())
        ->capture_default_str();
}

CLI::Validator seconds_validator() {
    return {[](std::string& text) -> std::string {
                double seconds = 0;
                const char* end = text.data() + text.size();
                const auto [stop, error] = std::from_chars(text.data(), end, seconds);
                // Written so that "nan" is refused too.
                const bool valid = error == std::errc{} && stop == end && seconds >= 0;
                return valid ? ""
                             : fmt::format("'{}' is no time: seconds, 0 or more, expected", text);
            },
            ""};
}

}  // namespace orvane::tools

#include "tools/command_line/arguments.hpp"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <charconv>
#include <string>
#include <system_error>

#include "tools/text/target_text.hpp"
#include "tools/text/time_text.hpp"

namespace orvane::tools {
namespace {

constexpr const char* moment_forms =
    "2026-01-31 12:00:00.5, 2026-01-31T12:00:00Z, or +90, +10m, +2h behind the begin";

}  // namespace

LoggerTarget require_target(const std::string& text) {
    std::string error;
    const std::optional<LoggerTarget> target = parse_target(text, error);
    if (!target) {
        throw CLI::ValidationError(error);
    }
    return *target;
}

void add_domain_options(CLI::App& command, DomainOptions& domain) {
    command.add_option("--domain", domain.id, "DDS domain, 0 to 232")
        ->type_name("N")
        ->check(CLI::Range(0, 232).description(""))
        ->capture_default_str();
    command
        .add_option("--security", domain.security,
                    "Joins with the credentials in this folder, which orvane keys issue made")
        ->type_name("FOLDER")
        ->check(CLI::Validator{[](const std::string& folder) -> std::string {
                                   return folder.empty() ? "'': the name of a folder expected" : "";
                               },
                               ""});
}

void add_timeout_option(CLI::App& command, double& seconds, const std::string& description) {
    command.add_option("--timeout", seconds, description)
        ->type_name("SECONDS")
        ->check(seconds_validator())
        ->capture_default_str();
}

std::optional<double> parse_real(const std::string& text) {
    double number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc{} && stop == end ? std::optional{number} : std::nullopt;
}

CLI::Validator seconds_validator() {
    return {[](std::string& text) -> std::string {
                const auto seconds = parse_real(text);
                // Written so that "nan" is refused too.
                return seconds && *seconds >= 0
                           ? ""
                           : fmt::format("'{}' is no time: seconds, 0 or more, expected", text);
            },
            ""};
}

void add_span_options(CLI::App& command, TimeSpan& span) {
    const auto add = [&](const std::string& name, std::optional<Moment>& moment,
                         const std::string& description) {
        command
            .add_option_function<std::string>(
                name,
                [&moment](const std::string& text) {
                    moment = require(parse_moment(text), text, "time", moment_forms);
                },
                description)
            ->type_name("TIME");
    };
    add("--from", span.from, "Not what is earlier: a time as printed, or +10m behind the begin");
    add("--to", span.to, "Not what is later");
}

}  // namespace orvane::tools

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <limits>
#include <optional>
#include <string>

#include "tools/command_line/arguments.hpp"
#include "tools/text/application_text.hpp"
#include "tools/text/level_names.hpp"

namespace orvane::tools {
namespace {

CLI::Validator level_validator(std::optional<std::int32_t>& level) {
    return {[&level](std::string& text) -> std::string {
                level = parse_level(text);
                return level ? ""
                             : fmt::format("'{}' is no level: one of {} or a number expected", text,
                                           level_names());
            },
            ""};
}

CLI::Validator application_validator(std::optional<Application>& application) {
    return {[&application](std::string& text) -> std::string {
                application = parse_application(text);
                return application ? ""
                                   : fmt::format(
                                         "'{}' is no application: HOST:APP in hexadecimal "
                                         "expected, as the lines show it",
                                         text);
            },
            ""};
}

}  // namespace

CLI::App* add_tail_subcommand(CLI::App& app, TailOptions& options) {
    CLI::App* command = app.add_subcommand("tail", "Prints log messages while they are published");
    command->footer(
        "Examples:\n"
        "  orvane tail --level WARNING          warnings and what is more severe\n"
        "  orvane tail --category 'nav.*'       categories that begin with nav.\n"
        "  orvane tail --json --for 10 > logs   ten seconds of logs for a program");
    add_domain_option(*command, options.domain_id);
    command
        ->add_option_function<std::string>(
            "--level", [](const std::string&) {}, "This level and more severe ones")
        ->type_name("NAME|NUMBER")
        ->check(level_validator(options.query.level));
    command->add_option("--category", options.query.category, "Categories that match the pattern")
        ->type_name("GLOB");
    command
        ->add_option_function<std::string>(
            "--app", [](const std::string&) {}, "This application only")
        ->type_name("HOST:APP")
        ->check(application_validator(options.query.application));
    command->add_option("--contains", options.query.contains, "Messages with this text in them")
        ->type_name("TEXT");
    command->add_flag("--json", options.json, "One JSON object a line");
    command->add_flag("--no-color", options.no_color, "No colors on a terminal");
    command->add_flag("--utc", options.utc, "Universal instead of local time");
    command->add_option("--count", options.count, "End after so many messages")
        ->type_name("N")
        ->check(
            CLI::Range(std::int64_t{1}, std::numeric_limits<std::int64_t>::max()).description(""));
    command->add_option("--for", options.seconds, "End after so many seconds")
        ->type_name("SECONDS")
        ->check(seconds_validator());
    return command;
}

}  // namespace orvane::tools

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "tools/command_line/arguments.hpp"
#include "tools/text/level_names.hpp"
#include "tools/text/time_text.hpp"

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

/// Declares an option that may come again and again, with a target each time.
void add_targets(CLI::App& command, const std::string& name, std::vector<LoggerTarget>& targets,
                 const std::string& description) {
    command
        .add_option_function<std::string>(
            name, [&targets](const std::string& text) { targets.push_back(require_target(text)); },
            description)
        ->type_name("TARGET")
        ->trigger_on_parse();
}

}  // namespace

CLI::App* add_tail_subcommand(CLI::App& app, TailOptions& options) {
    CLI::App* command = app.add_subcommand("tail", "Prints log messages while they are published");
    command->footer(
        "Examples:\n"
        "  orvane tail --level WARNING          warnings and what is more severe\n"
        "  orvane tail --category 'nav.*'       categories that begin with nav.\n"
        "  orvane tail --app 'nav*@robot?' --exclude nav#2\n"
        "                                       loggers by kind, host and number\n"
        "  orvane tail --json --for 10 > logs   ten seconds of logs for a program");
    add_domain_options(*command, options.domain);
    add_display_options(*command, options.display);
    add_duration_option(*command, options.seconds);
    return command;
}

void add_duration_option(CLI::App& command, std::optional<double>& seconds) {
    command.add_option("--for", seconds, "End after so many seconds")
        ->type_name("SECONDS")
        ->check(seconds_validator());
}

void add_filter_options(CLI::App& command, LogQuery& query) {
    command
        .add_option_function<std::string>(
            "--level", [](const std::string&) {}, "This level and more severe ones")
        ->type_name("NAME|NUMBER")
        ->check(level_validator(query.level));
    command.add_option("--category", query.category, "Categories that match the pattern")
        ->type_name("GLOB");
    add_targets(command, "--app", query.loggers,
                "Only these: KIND, KIND@HOST, KIND#NUMBER, HOST:APP or HOST:APP:INSTANCE; may be "
                "repeated");
    add_targets(command, "--exclude", query.excluded, "Not these; may be repeated");
    command.add_option("--contains", query.contains, "Messages with this text in them")
        ->type_name("TEXT");
}

void add_display_options(CLI::App& command, DisplayOptions& options) {
    add_filter_options(command, options.query);
    command
        .add_option_function<std::string>(
            "--time",
            [&options](const std::string& text) {
                options.time =
                    require(parse_time_format(text), text, "form of times", time_format_names());
            },
            "clock, relative (seconds since the first line), delta (since the line before) or iso")
        ->type_name("FORM");
    command.add_flag("--utc", options.utc, "Universal instead of local time");
    command.add_flag("--ids", options.ids, "HOST:APP behind the names of loggers");
    command.add_flag("--json", options.json, "One JSON object a line");
    command.add_flag("--no-color", options.no_color, "No colors on a terminal");
    command.add_option("--count", options.count, "End after so many messages")
        ->type_name("N")
        ->check(
            CLI::Range(std::int64_t{1}, std::numeric_limits<std::int64_t>::max()).description(""));
}

}  // namespace orvane::tools

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <limits>
#include <string>

#include "tools/command_line/arguments.hpp"

namespace orvane::tools {
namespace {

double require_speed(const std::string& text) {
    if (text == "max") {
        return std::numeric_limits<double>::infinity();
    }
    const auto speed = parse_real(text);
    if (!speed || !(*speed > 0)) {
        throw CLI::ValidationError(
            fmt::format("'{}' is no speed: a number above 0, or max, expected", text));
    }
    return *speed;
}

}  // namespace

CLI::App* add_replay_subcommand(CLI::App& app, ReplayOptions& options) {
    CLI::App* command =
        app.add_subcommand("replay", "Publishes recordings anew, with their ids and times");
    command->footer(
        "Examples:\n"
        "  orvane replay log.mcap                     see it with: orvane tail --domain 100\n"
        "  orvane replay log.mcap --speed 10 --from +5m --to +6m\n"
        "                                             a minute of it, in six seconds\n"
        "  orvane replay log.mcap log.*.mcap --max-pause 1 --wait\n"
        "                                             a recording of several files");
    command->add_option("FILE", options.files, "Recordings: MCAP or lines of JSON")
        ->type_name("")
        ->required();
    add_domain_options(*command, options.domain);
    command
        ->add_option_function<std::string>(
            "--speed", [&options](const std::string& text) { options.speed = require_speed(text); },
            "So many times as fast as it was logged; max is without pauses")
        ->type_name("FACTOR");
    add_span_options(*command, options.span);
    command
        ->add_option("--max-pause", options.longest_pause,
                     "Shorten longer pauses between messages to so many seconds")
        ->type_name("SECONDS")
        ->check(seconds_validator());
    command->add_flag("--loop", options.loop, "Begin anew at the end, until SIGINT or SIGTERM");
    command->add_flag("--wait", options.waits_for_viewer, "Begin when somebody reads the messages");
    command->add_flag("--among-live", options.among_live,
                      "Publish also in a domain where loggers are alive");
    add_filter_options(*command, options.query);
    return command;
}

}  // namespace orvane::tools

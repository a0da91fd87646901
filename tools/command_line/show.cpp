#include <CLI/CLI.hpp>

#include "tools/command_line/arguments.hpp"

namespace orvane::tools {

CLI::App* add_show_subcommand(CLI::App& app, ShowOptions& options) {
    CLI::App* command = app.add_subcommand("show", "Prints recordings, in the order of time");
    command->footer(
        "Examples:\n"
        "  orvane show log.mcap --level WARNING       warnings and what is more severe\n"
        "  orvane show log.mcap log.*.mcap            a recording of several files\n"
        "  orvane show --follow log.mcap              go on while it is written, then with "
        "log.1.mcap\n"
        "  orvane show --json log.mcap > log.jsonl    lines of JSON from MCAP");
    command->add_option("FILE", options.files, "Recordings: MCAP or lines of JSON")
        ->type_name("")
        ->required();
    command->add_flag("--follow", options.follow,
                      "Go on at the ends of the files and with the next files of their recordings, "
                      "until SIGINT or SIGTERM");
    add_span_options(*command, options.span);
    add_display_options(*command, options.display);
    return command;
}

}  // namespace orvane::tools

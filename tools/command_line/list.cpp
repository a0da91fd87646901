#include <CLI/CLI.hpp>

#include "tools/command_line/arguments.hpp"

namespace orvane::tools {

CLI::App* add_list_subcommand(CLI::App& app, ListOptions& options) {
    CLI::App* command = app.add_subcommand("list", "Shows the loggers of a domain");
    command->footer(
        "Examples:\n"
        "  orvane list                          the loggers of domain 0 and their settings\n"
        "  orvane list --domain 3 --watch       the same of domain 3, kept up to date\n"
        "  orvane list --json | jq .kind        for a program");
    add_domain_options(*command, options.domain);
    command->add_flag("--json", options.json, "One JSON object a line");
    command->add_flag("--wide", options.wide,
                      "All columns and the network addresses, whatever the width of the terminal");
    command->add_flag("--watch", options.watch,
                      "Go on: a table kept up to date on a terminal, else a line for each change");
    command->add_flag("--no-color", options.no_color, "No colors on a terminal");
    add_timeout_option(*command, options.timeout_seconds,
                       "Look for loggers no longer than so many seconds");
    return command;
}

}  // namespace orvane::tools

#include <CLI/CLI.hpp>

#include "tools/command_line/arguments.hpp"

namespace orvane::tools {

CLI::App* add_check_config_subcommand(CLI::App& app, CheckConfigOptions& options) {
    CLI::App* command = app.add_subcommand(
        "check-config", "Checks an XML configuration, and prints the settings that it means");
    command->add_option("FILE", options.file_name, "XML file with an orvane element, QoS profiles")
        ->required();
    command->add_flag("--strict", options.strict, "Exit with status 1 for warnings, too");
    command->footer(
        "Problems are lines FILE:LINE: ELEMENT: TEXT on standard error, and the exit status is 1.\n"
        "TEXT begins with \"warning: \" where the file is accepted, but can hardly mean what it\n"
        "says: text behind a number, a number above 32 bits, an attribute, text between elements,\n"
        "a second element of the same name. Warnings alone leave the exit status 0.\n"
        "Example:\n"
        "  orvane check-config application.xml");
    return command;
}

}  // namespace orvane::tools

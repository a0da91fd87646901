#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>

#include "tools/subcommands/check_config.hpp"
#include "tools/subcommands/exit_status.hpp"
#include "tools/subcommands/list.hpp"
#include "tools/subcommands/set.hpp"
#include "tools/subcommands/tail.hpp"

namespace orvane::tools {
namespace {

int run(int argc, char** argv) {
    CLI::App app{"Looks at what applications log over DDS, and changes what they log.", "orvane"};
    app.set_version_flag("--version", "orvane " ORVANE_VERSION);
    app.require_subcommand(0, 1);

    TailOptions tail_options;
    CLI::App* tail_command = add_tail_subcommand(app, tail_options);
    ListOptions list_options;
    CLI::App* list_command = add_list_subcommand(app, list_options);
    // The three subcommands share a record, because a command line has only one of them.
    SetOptions set_options;
    add_set_level_subcommand(app, set_options);
    add_set_verbosity_subcommand(app, set_options);
    add_set_format_subcommand(app, set_options);
    CheckConfigOptions check_options;
    CLI::App* check_command = add_check_config_subcommand(app, check_options);

    try {
        app.parse(argc, argv);
        // If the parser required a subcommand, it would not name an unknown one.
        if (app.get_subcommands().empty()) {
            throw CLI::RequiredError::Subcommand(1);
        }
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? exit_success : exit_usage;
    }
    if (tail_command->parsed()) {
        return tail(tail_options);
    }
    if (check_command->parsed()) {
        return check_config(check_options);
    }
    return list_command->parsed() ? list(list_options) : set(set_options);
}

}  // namespace
}  // namespace orvane::tools

int main(int argc, char** argv) {
    try {
        return orvane::tools::run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "orvane: %s\n", error.what());
        return orvane::tools::exit_failure;
    }
}

#include <CLI/CLI.hpp>

#include "tools/exit_status.hpp"
#include "tools/tail.hpp"

int main(int argc, char** argv) {
    using namespace orvane::tools;

    CLI::App app{"Looks at what applications log over DDS."};
    app.set_version_flag("--version", "orvane " ORVANE_VERSION);
    app.require_subcommand(1);

    TailOptions tail_options;
    CLI::App* tail_command = add_tail_command(app, tail_options);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? exit_success : exit_usage;
    }
    return tail_command->parsed() ? tail(tail_options) : exit_usage;
}

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>

#include "tools/exit_status.hpp"
#include "tools/tail.hpp"

namespace orvane::tools {
namespace {

int run(int argc, char** argv) {
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

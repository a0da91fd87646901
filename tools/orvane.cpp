#include <cstdio>
#include <exception>

#include "tools/command_line/command_line.hpp"
#include "tools/subcommands/exit_status.hpp"

int main(int argc, char** argv) {
    try {
        return orvane::tools::CommandLine{}.run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "orvane: %s\n", error.what());
        return orvane::tools::exit_failure;
    }
}

/// @file command_line.hpp
/// @brief The command line of the tool: its subcommands and their options.
#pragma once

#include <memory>

#include "tools/subcommands/check_config.hpp"
#include "tools/subcommands/export.hpp"
#include "tools/subcommands/keys.hpp"
#include "tools/subcommands/list.hpp"
#include "tools/subcommands/record.hpp"
#include "tools/subcommands/replay.hpp"
#include "tools/subcommands/set.hpp"
#include "tools/subcommands/show.hpp"
#include "tools/subcommands/tail.hpp"

// The name is the library's.
namespace CLI {  // NOLINT(readability-identifier-naming)
class App;
}

namespace orvane::tools {

class CommandLine {
public:
    CommandLine();
    ~CommandLine();
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;

    /// Parses the arguments and runs the subcommand that they name.
    /// @return the process's exit status
    int run(int argc, const char* const* argv);

    /// What can be written on the command line.
    const CLI::App& description() const { return *app_; }

private:
    std::unique_ptr<CLI::App> app_;
    TailOptions tail_options_;
    RecordOptions record_options_;
    ReplayOptions replay_options_;
    ShowOptions show_options_;
    ListOptions list_options_;
    /// The three subcommands share a record, because a command line has only one of them.
    SetOptions set_options_;
    CheckConfigOptions check_options_;
    OtlpExportOptions otlp_options_;
    JournalExportOptions journal_options_;
    KeysOptions keys_options_;
    const CLI::App* tail_command_;
    const CLI::App* record_command_;
    const CLI::App* replay_command_;
    const CLI::App* show_command_;
    const CLI::App* list_command_;
    const CLI::App* otlp_command_;
    const CLI::App* journal_command_;
    const CLI::App* check_command_;
    const CLI::App* keys_command_;
};

}  // namespace orvane::tools

#include "tools/command_line/command_line.hpp"

#include <CLI/CLI.hpp>

#include "tools/command_line/arguments.hpp"
#include "tools/subcommands/exit_status.hpp"

namespace orvane::tools {

CommandLine::CommandLine()
    : app_(std::make_unique<CLI::App>(
          "Looks at what applications log over DDS, and changes what they log.", "orvane")),
      tail_command_(add_tail_subcommand(*app_, tail_options_)),
      record_command_(add_record_subcommand(*app_, record_options_)),
      replay_command_(add_replay_subcommand(*app_, replay_options_)),
      show_command_(add_show_subcommand(*app_, show_options_)),
      list_command_(add_list_subcommand(*app_, list_options_)) {
    add_set_level_subcommand(*app_, set_options_);
    add_set_verbosity_subcommand(*app_, set_options_);
    add_set_format_subcommand(*app_, set_options_);
    CLI::App* const export_command = add_export_subcommand(*app_);
    otlp_command_ = add_otlp_subcommand(*export_command, otlp_options_);
    journal_command_ = add_journal_subcommand(*export_command, journal_options_);
    check_command_ = add_check_config_subcommand(*app_, check_options_);
    keys_command_ = add_keys_subcommand(*app_, keys_options_);
    app_->set_version_flag("--version", "orvane " ORVANE_VERSION ", " ORVANE_ENGINE);
    app_->require_subcommand(0, 1);
}

CommandLine::~CommandLine() = default;

int CommandLine::run(int argc, const char* const* argv) {
    try {
        app_->parse(argc, argv);
        // If the parser required a subcommand, it would not name an unknown one.
        if (app_->get_subcommands().empty()) {
            throw CLI::RequiredError::Subcommand(1);
        }
    } catch (const CLI::ParseError& error) {
        return app_->exit(error) == 0 ? exit_success : exit_usage;
    }
    if (tail_command_->parsed()) {
        return tail(tail_options_);
    }
    if (record_command_->parsed()) {
        return record(record_options_);
    }
    if (replay_command_->parsed()) {
        return replay(replay_options_);
    }
    if (show_command_->parsed()) {
        return show(show_options_);
    }
    if (otlp_command_->parsed()) {
        return export_otlp(otlp_options_);
    }
    if (journal_command_->parsed()) {
        return export_journal(journal_options_);
    }
    if (check_command_->parsed()) {
        return check_config(check_options_);
    }
    if (keys_command_->parsed()) {
        return keys_options_.action(keys_options_);
    }
    return list_command_->parsed() ? list(list_options_) : set(set_options_);
}

}  // namespace orvane::tools

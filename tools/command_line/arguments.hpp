/// @file arguments.hpp
/// @brief What can be written behind `orvane`: the subcommands, and options that several share.
#pragma once

#include <fmt/format.h>

#include <CLI/App.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "tools/subcommands/check_config.hpp"
#include "tools/subcommands/export.hpp"
#include "tools/subcommands/keys.hpp"
#include "tools/subcommands/list.hpp"
#include "tools/subcommands/record.hpp"
#include "tools/subcommands/replay.hpp"
#include "tools/subcommands/set.hpp"
#include "tools/subcommands/show.hpp"
#include "tools/subcommands/tail.hpp"

namespace orvane::tools {

/// @name Each declares a subcommand and its arguments. Parsing fills @p options.
/// @{
CLI::App* add_tail_subcommand(CLI::App& app, TailOptions& options);
CLI::App* add_record_subcommand(CLI::App& app, RecordOptions& options);
CLI::App* add_replay_subcommand(CLI::App& app, ReplayOptions& options);
CLI::App* add_show_subcommand(CLI::App& app, ShowOptions& options);
/// The one below which the next two are.
CLI::App* add_export_subcommand(CLI::App& app);
CLI::App* add_otlp_subcommand(CLI::App& export_command, OtlpExportOptions& options);
CLI::App* add_journal_subcommand(CLI::App& export_command, JournalExportOptions& options);
CLI::App* add_list_subcommand(CLI::App& app, ListOptions& options);
CLI::App* add_set_level_subcommand(CLI::App& app, SetOptions& options);
CLI::App* add_set_verbosity_subcommand(CLI::App& app, SetOptions& options);
CLI::App* add_set_format_subcommand(CLI::App& app, SetOptions& options);
CLI::App* add_check_config_subcommand(CLI::App& app, CheckConfigOptions& options);
/// With those below it; @p options says which one was called.
CLI::App* add_keys_subcommand(CLI::App& app, KeysOptions& options);
/// @}

/// Options of the subcommands that do not take all messages.
void add_filter_options(CLI::App& command, LogQuery& query);

/// Options of the subcommands that read recordings.
void add_span_options(CLI::App& command, TimeSpan& span);

/// Options of the subcommands that print messages, with those that filter them.
void add_display_options(CLI::App& command, DisplayOptions& options);

/// @name Parsers of a value. Each throws the error that the parser of the command line prints as
/// wrong usage.
/// @{
template <typename Value>
Value require(std::optional<Value> value, const std::string& text, std::string_view what,
              const std::string& valid) {
    if (!value) {
        throw CLI::ValidationError(
            fmt::format("'{}' is no {}: one of {} expected", text, what, valid));
    }
    return *std::move(value);
}
LoggerTarget require_target(const std::string& text);
/// @}

/// Accepts what @p parse understands, and stores it.
template <typename Number, typename Value>
CLI::Validator storing(std::optional<std::uint64_t> (*parse)(std::string_view text), Value& value,
                       const char* expected) {
    return {[parse, &value, expected](std::string& text) -> std::string {
                const auto number = parse(text);
                if (!number) {
                    return fmt::format("'{}': {} expected", text, expected);
                }
                value = Number{*number};
                return "";
            },
            ""};
}

/// What a size may be, for messages to the user.
inline constexpr const char* size_forms = "bytes above 0, with or without k, M or G,";

/// Reads a number, also "inf" and "nan". @return nothing for any other text
std::optional<double> parse_real(const std::string& text);

/// The options of the subcommands that join a domain.
void add_domain_options(CLI::App& command, DomainOptions& domain);

/// @param seconds its present value stands in the help
void add_timeout_option(CLI::App& command, double& seconds, const std::string& description);

/// The option that ends a subcommand after a time.
void add_duration_option(CLI::App& command, std::optional<double>& seconds);

/// Accepts seconds, 0 or more.
CLI::Validator seconds_validator();

}  // namespace orvane::tools

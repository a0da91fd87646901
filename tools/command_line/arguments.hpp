/// @file arguments.hpp
/// @brief What can be written behind `orvane`: the subcommands, and options that several share.
#pragma once

#include <CLI/App.hpp>
#include <cstdint>
#include <string>

#include "tools/subcommands/check_config.hpp"
#include "tools/subcommands/list.hpp"
#include "tools/subcommands/set.hpp"
#include "tools/subcommands/tail.hpp"

namespace orvane::tools {

/// @name Each declares a subcommand and its arguments. Parsing fills @p options.
/// @{
CLI::App* add_tail_subcommand(CLI::App& app, TailOptions& options);
CLI::App* add_list_subcommand(CLI::App& app, ListOptions& options);
CLI::App* add_set_level_subcommand(CLI::App& app, SetOptions& options);
CLI::App* add_set_verbosity_subcommand(CLI::App& app, SetOptions& options);
CLI::App* add_set_format_subcommand(CLI::App& app, SetOptions& options);
CLI::App* add_check_config_subcommand(CLI::App& app, CheckConfigOptions& options);
/// @}

void add_domain_option(CLI::App& command, std::int32_t& domain_id);

/// @param seconds its present value stands in the help
void add_timeout_option(CLI::App& command, double& seconds, const std::string& description);

/// Accepts seconds, 0 or more.
CLI::Validator seconds_validator();

}  // namespace orvane::tools

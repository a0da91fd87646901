#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/command_line/arguments.hpp"
#include "tools/text/level_names.hpp"
#include "tools/text/setting_names.hpp"

namespace orvane::tools {
namespace {

Command parse_level_command(const std::vector<std::string>& words) {
    return SetFilterLevel{require(parse_filter_level(words.front()), words.front(), "level",
                                  filter_level_names() + " or a number from 0 on")};
}

Command parse_format_command(const std::vector<std::string>& words) {
    return SetPrintFormat{require(parse_print_format(words.front()), words.front(), "print format",
                                  print_format_names() + " or its number, 0 to 6,")};
}

Command parse_verbosity_command(const std::vector<std::string>& words) {
    SetVerbosities command;
    for (std::size_t i = 0; i < words.size(); i += 2) {
        const MiddlewareCategory category =
            require(parse_middleware_category(words[i]), words[i], "category",
                    middleware_category_names() + " or its number, 0 to 4,");
        if (i + 1 == words.size()) {
            throw CLI::ValidationError(fmt::format("a verbosity for {} is missing: one of {}",
                                                   words[i], verbosity_names()));
        }
        const Verbosity verbosity =
            require(parse_verbosity(words[i + 1]), words[i + 1], "verbosity",
                    verbosity_names() + " or its number, 0 to 5,");
        const bool known = std::any_of(command.pairs.begin(), command.pairs.end(),
                                       [&](const auto& pair) { return pair.first == category; });
        if (known) {
            throw CLI::ValidationError(
                fmt::format("the category {} is given twice", middleware_category_name(category)));
        }
        command.pairs.emplace_back(category, verbosity);
    }
    return command;
}

using Parse = Command (*)(const std::vector<std::string>& words);

/// The arguments of all three subcommands. The words are parsed when all have been taken.
CLI::Option* add_arguments(CLI::App& command, SetOptions& options, const std::string& words,
                           Parse parse) {
    command
        .add_option_function<std::string>(
            "TARGET",
            [&options](const std::string& text) { options.target = require_target(text); },
            "KIND, KIND@HOST, KIND#NUMBER, HOST:APP or HOST:APP:INSTANCE as orvane list shows "
            "them; kinds and names of hosts may be patterns")
        ->type_name("")
        ->required();
    add_domain_options(command, options.domain);
    add_timeout_option(
        command, options.timeout_seconds,
        "Look for loggers, then wait for their answers, no longer than so many seconds");
    command.callback([&options, parse] { options.command = parse(options.words); });
    return command.add_option(words, options.words)->type_name("")->required();
}

}  // namespace

CLI::App* add_set_level_subcommand(CLI::App& app, SetOptions& options) {
    CLI::App* command =
        app.add_subcommand("set-level", "Changes the filter level of loggers: what they publish");
    add_arguments(*command, options, "LEVEL", parse_level_command)
        ->description(filter_level_names() + ", or a number from 0 on")
        ->expected(1);
    command->footer(
        "Examples:\n"
        "  orvane set-level 0a141e28:0000c350 DEBUG   one logger\n"
        "  orvane set-level pump WARNING              all of this application kind\n"
        "  orvane set-level pump@robot2 WARNING       those on one host\n"
        "  orvane set-level 'nav*' 650                all kinds that begin with nav");
    return command;
}

CLI::App* add_set_verbosity_subcommand(CLI::App& app, SetOptions& options) {
    CLI::App* command = app.add_subcommand(
        "set-verbosity", "Changes what the middleware below loggers reports, by category");
    add_arguments(*command, options, "SETTINGS", parse_verbosity_command)
        ->description("Pairs CATEGORY VERBOSITY; categories " + middleware_category_names() +
                      "; verbosities " + verbosity_names());
    command->footer(
        "Examples:\n"
        "  orvane set-verbosity pump COMMUNICATION STATUS_REMOTE\n"
        "  orvane set-verbosity '*' API WARNING ENTITIES WARNING");
    return command;
}

CLI::App* add_set_format_subcommand(CLI::App& app, SetOptions& options) {
    CLI::App* command = app.add_subcommand(
        "set-format", "Changes how the middleware below loggers prints its reports");
    add_arguments(*command, options, "FORMAT", parse_format_command)
        ->description(print_format_names())
        ->expected(1);
    command->footer(
        "Examples:\n"
        "  orvane set-format pump VERBOSE_TIMESTAMPED\n"
        "  orvane set-format --domain 3 '*' DEFAULT");
    return command;
}

}  // namespace orvane::tools

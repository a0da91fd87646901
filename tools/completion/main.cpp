// Prints the tables of the completion in bash, made from the tool's description of its command
// line. completion.bash uses them.

#include <fmt/format.h>

#include <CLI/App.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "tools/command_line/command_line.hpp"
#include "tools/security/roles.hpp"
#include "tools/text/level_names.hpp"
#include "tools/text/setting_names.hpp"
#include "tools/text/time_text.hpp"

namespace orvane::tools {
namespace {

/// An argument as the help calls it, and the words that it may be: "A, B, …".
struct Argument {
    std::string_view name;
    std::string words;
};

/// Completed with the names of files.
constexpr const char* files = "-f";

std::string role_words() {
    std::string words;
    for (const char* role : role_names) {
        words += (words.empty() ? "" : ", ") + std::string{role};
    }
    return words;
}

std::string words_of(const std::string& argument) {
    static const Argument arguments[] = {
        {"NAME|NUMBER", level_names()},
        {"LEVEL", filter_level_names()},
        {"CATEGORY", middleware_category_names()},
        {"VERBOSITY", verbosity_names()},
        {"FORMAT", print_format_names()},
        {"FORM", time_format_names()},
        {"FILE", files},
        {"PATH", files},
        {"DIR", files},
        {"FOLDER", files},
        {"application|viewer|operator", role_words()},
        {"json|mcap", "json, mcap"},
        {"FACTOR", "max"},
        // Nobody can tell what these are.
        {"GLOB", ""},
        {"N", ""},
        {"NAME", ""},
        {"NAME=VALUE", ""},
        {"SECONDS", ""},
        {"SIZE", ""},
        {"TARGET", ""},
        {"TEXT", ""},
        {"TIME", ""},
        {"URL", "http://, https://"},
    };
    const auto* const known =
        std::find_if(std::begin(arguments), std::end(arguments),
                     [&](const Argument& each) { return each.name == argument; });
    if (known == std::end(arguments)) {
        throw std::invalid_argument(
            fmt::format("the argument {} has no row in {}", argument, __FILE__));
    }
    std::string words = known->words;
    std::erase(words, ',');
    return words;
}

/// What the case of a command sets.
struct Tables {
    std::string options;
    std::string values;
    std::string arguments;
    std::size_t repeated = 0;
};

void add_arguments(const CLI::Option& option, Tables& tables) {
    const std::string name_of_all = option.get_name(true);
    // The parser takes no name of two words.
    std::istringstream names(name_of_all == "SETTINGS" ? "CATEGORY VERBOSITY" : name_of_all);
    std::size_t count = 0;
    for (std::string name; names >> name; ++count) {
        tables.arguments += fmt::format(" '{}'", words_of(name));
    }
    if (option.get_items_expected_max() > 1) {
        tables.repeated = count;
    }
}

void add_option(const CLI::Option& option, Tables& tables) {
    for (const std::string& name : option.get_lnames()) {
        tables.options += fmt::format(" --{}", name);
        if (option.get_items_expected_max() > 0) {
            tables.values += fmt::format(" [--{}]='{}'", name, words_of(option.get_type_name()));
        }
    }
}

/// Prints a case for a command, and for each below it.
/// @param pattern the names from the first command on, in apostrophes
void print_cases(const CLI::App& command, const std::string& pattern) {
    Tables tables;
    for (const CLI::Option* option : command.get_options()) {
        if (option->get_positional()) {
            add_arguments(*option, tables);
        } else {
            add_option(*option, tables);
        }
    }
    std::string names;
    for (const CLI::App* each : command.get_subcommands(nullptr)) {
        names += (names.empty() ? "" : " ") + each->get_name();
    }
    fmt::print(
        "        '{}')\n"
        "            below='{}'\n"
        "            options='{}'\n"
        "            values=({} )\n"
        "            arguments=({} )\n"
        "            repeated={}\n"
        "            ;;\n",
        pattern, names, tables.options, tables.values, tables.arguments, tables.repeated);
    for (const CLI::App* each : command.get_subcommands(nullptr)) {
        print_cases(*each, pattern.empty() ? each->get_name() : pattern + ' ' + each->get_name());
    }
}

void print_tables() {
    const CommandLine line;
    fmt::print(
        "\n_orvane_describe() {{\n"
        "    below='' options='' values=() arguments=() repeated=0\n"
        "    case $1 in\n");
    print_cases(line.description(), "");
    fmt::print("    esac\n}}\n");
}

}  // namespace
}  // namespace orvane::tools

int main() {
    try {
        orvane::tools::print_tables();
        return std::fflush(stdout) == 0 ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "orvane_completion: %s\n", error.what());
        return 1;
    }
}

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <chrono>
#include <limits>
#include <string>

#include "tools/command_line/arguments.hpp"
#include "tools/text/scaled_number.hpp"

namespace orvane::tools {
namespace {

void add_rotation_options(CLI::App& command, RecordingOptions& options) {
    const auto ignore = [](const std::string&) {};
    command
        .add_option_function<std::string>(
            "--rotate-size", ignore,
            "Begin the next file when one has so many bytes; k, M and G are 2^10, 2^20, 2^30")
        ->type_name("SIZE")
        ->check(storing<std::uint64_t>(parse_size, options.rotate_size, size_forms));
    command
        .add_option_function<std::string>(
            "--rotate-time", ignore,
            "Begin the next file when one is so many seconds old; m and h are minutes, hours")
        ->type_name("TIME")
        ->check(storing<std::chrono::seconds>(
            parse_duration, options.rotate_time,
            "seconds above 0, or minutes with m, or hours with h, up to a year"));
    command.add_option("--keep", options.keep, "Keep the last N files, and delete older ones")
        ->type_name("N")
        ->check(
            CLI::Range(std::int64_t{1}, std::numeric_limits<std::int64_t>::max()).description(""));
}

}  // namespace

CLI::App* add_record_subcommand(CLI::App& app, RecordOptions& options) {
    CLI::App* command =
        app.add_subcommand("record", "Keeps messages in files while they are published");
    command->footer(
        "Examples:\n"
        "  orvane record log.mcap                        until Ctrl-C\n"
        "  orvane record log.jsonl --level WARNING --for 60\n"
        "                                                warnings of a minute\n"
        "  orvane record log.mcap --rotate-size 64M --keep 10\n"
        "                                                log.mcap, log.1.mcap, log.2.mcap, ...");
    command->add_option("FILE", options.recording.path, "A new file, .mcap, .jsonl or .json")
        ->type_name("")
        ->required();
    add_domain_options(*command, options.domain);
    add_filter_options(*command, options.query);
    CLI::Option* format =
        command->add_option("--format", "The format, when the name of the file does not say it")
            ->type_name("json|mcap")
            ->check(CLI::IsMember({"json", "mcap"}).description(""));
    add_rotation_options(*command, options.recording);
    add_duration_option(*command, options.seconds);
    command->callback([&options, format] {
        RecordingOptions& recording = options.recording;
        if (!format->empty()) {
            recording.format = format->as<std::string>() == "mcap" ? RecordingFormat::mcap
                                                                   : RecordingFormat::json_lines;
            return;
        }
        const auto format_of_name = format_of_file(recording.path);
        if (!format_of_name) {
            throw CLI::ValidationError(
                fmt::format("FILE: '{}': a name that ends in {} expected, or --format",
                            recording.path, recording_endings));
        }
        recording.format = *format_of_name;
    });
    return command;
}

}  // namespace orvane::tools

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "tools/command_line/arguments.hpp"
#include "tools/export/journal_sink.hpp"
#include "tools/text/scaled_number.hpp"

namespace orvane::tools {
namespace {

void add_common_options(CLI::App& command, ExportOptions& options) {
    add_domain_options(command, options.domain);
    add_filter_options(command, options.query);
    command
        .add_option_function<std::string>(
            "--buffer", [](const std::string&) {},
            "Let so many bytes wait while nothing is taken, by default 16M")
        ->type_name("SIZE")
        ->check(storing<std::uint64_t>(parse_size, options.buffer, size_forms));
    add_duration_option(command, options.seconds);
}

HttpUrl require_collector(const std::string& text) {
    std::string error;
    std::optional<HttpUrl> url = parse_http_url(text, error);
    if (!url) {
        throw CLI::ValidationError(error);
    }
    if (url->target == "/") {
        url->target = "/v1/logs";
    }
    return *std::move(url);
}

/// The header fields from the environment, with those of the command line in their places.
std::vector<HttpHeader> all_headers(const std::vector<HttpHeader>& given) {
    std::vector<HttpHeader> headers;
    for (const char* name : {"OTEL_EXPORTER_OTLP_LOGS_HEADERS", "OTEL_EXPORTER_OTLP_HEADERS"}) {
        const char* list = std::getenv(name);
        if (list == nullptr) {
            continue;
        }
        std::string error;
        auto read = parse_http_header_list(list, error);
        if (!read) {
            throw CLI::ValidationError(name, error);
        }
        headers = *std::move(read);
        break;
    }
    for (const HttpHeader& header : given) {
        set_header(headers, header);
    }
    return headers;
}

CLI::Validator certificates_validator() {
    return {[](std::string& path) -> std::string {
                std::error_code unknown;
                std::string bytes;
                if (std::filesystem::is_regular_file(path, unknown)) {
                    std::ifstream file(path);
                    bytes.assign(std::istreambuf_iterator<char>{file}, {});
                }
                const bool has_certificate =
                    bytes.find("-----BEGIN CERTIFICATE-----") != std::string::npos;
                return has_certificate
                           ? ""
                           : fmt::format("{}: a file with certificates in PEM expected", path);
            },
            ""};
}

}  // namespace

CLI::App* add_export_subcommand(CLI::App& app) {
    CLI::App* command = app.add_subcommand("export", "Hands messages on to other systems of logs");
    command->require_subcommand(1);
    return command;
}

CLI::App* add_otlp_subcommand(CLI::App& export_command, OtlpExportOptions& options) {
    CLI::App* command =
        export_command.add_subcommand("otlp", "Sends messages to an OpenTelemetry collector");
    command->footer(
        "Examples:\n"
        "  orvane export otlp http://localhost:4318      to /v1/logs there, until Ctrl-C\n"
        "  orvane export otlp https://logs.example.org --header 'authorization=Bearer 4fd1'\n"
        "                                                with a token\n"
        "  orvane export otlp http://localhost:4318/otlp/logs --level WARNING\n"
        "                                                warnings, to a path of its own");
    command
        ->add_option_function<std::string>(
            "URL", [&options](const std::string& text) { options.url = require_collector(text); },
            "http:// or https://, and the host; /v1/logs unless there is a path")
        ->type_name("")
        ->required();
    add_common_options(*command, options.common);
    command
        ->add_option_function<std::string>(
            "--header",
            [&options](const std::string& text) {
                std::string error;
                auto header = parse_http_header(text, error);
                if (!header) {
                    throw CLI::ValidationError("--header", error);
                }
                set_header(options.headers, *std::move(header));
            },
            "A header field of each request; may be repeated")
        ->type_name("NAME=VALUE")
        ->trigger_on_parse();
    command
        ->add_option("--ca", options.authorities,
                     "The authorities to trust, instead of the system's")
        ->type_name("FILE")
        ->check(certificates_validator());
    command->callback([&options] {
        if (!options.url.is_secure && !options.authorities.empty()) {
            throw CLI::ValidationError("--ca", "expected with https:// only");
        }
        options.headers = all_headers(options.headers);
    });
    return command;
}

CLI::App* add_journal_subcommand(CLI::App& export_command, JournalExportOptions& options) {
    CLI::App* command =
        export_command.add_subcommand("journal", "Sends messages to the journal of systemd");
    command->footer(
        "Examples:\n"
        "  orvane export journal --level NOTICE          until Ctrl-C\n"
        "  journalctl -t pump ORVANE_CATEGORY=hydraulics\n"
        "                                                what came of one kind and category");
    add_common_options(*command, options.common);
    command->add_option("--socket", options.socket, "The socket of the journal")
        ->type_name("PATH")
        ->capture_default_str()
        ->check(CLI::Validator{
            [](std::string& path) -> std::string {
                const bool fits = !path.empty() && path.size() <= longest_socket_path();
                return fits ? ""
                            : fmt::format("'{}': a path of 1 to {} bytes expected", path,
                                          longest_socket_path());
            },
            ""});
    return command;
}

}  // namespace orvane::tools

// Makes the report of runs: tables, the data of the plots, and the results in the documentation.
#include <fmt/format.h>
#include <sys/utsname.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "bench/report/report.hpp"
#include "bench/report/run.hpp"
#include "bench/report/sections.hpp"

namespace orvane::bench::report {
namespace {

constexpr std::string_view begin_mark = "<!-- results: ./dev bench writes from here -->\n";
constexpr std::string_view end_mark = "<!-- to here -->\n";

std::string processor() {
    std::ifstream file{"/proc/cpuinfo"};
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("model name")) {
            return line.substr(line.find(": ") + 2);
        }
    }
    return "unknown processor";
}

std::string this_machine() {
    utsname system{};
    uname(&system);
    return fmt::format("{}, {} processors, {} {} {}, compiler {}", processor(),
                       std::thread::hardware_concurrency(), system.sysname, system.release,
                       system.machine, __VERSION__);
}

/// Replaces what stands between the marks.
void paste(const std::filesystem::path& document, const std::string& text) {
    std::ostringstream content;
    content << std::ifstream{document}.rdbuf();
    std::string page = content.str();
    const std::size_t begin = page.find(begin_mark);
    const std::size_t end = page.find(end_mark);
    if (begin == std::string::npos || end == std::string::npos) {
        throw std::runtime_error{fmt::format("{} has no place for results", document.string())};
    }
    const std::size_t first = begin + begin_mark.size();
    page.replace(first, end - first, '\n' + text + '\n');
    std::ofstream{document} << page;
}

struct Arguments {
    std::filesystem::path results;
    std::filesystem::path runs;
    std::filesystem::path output;
    std::filesystem::path plot_data;
    std::filesystem::path document;
    Run run;
};

/// Adds the new run, if there is one, and reads the others.
Series runs_to_report(Arguments& arguments) {
    if (!arguments.results.empty()) {
        arguments.run.machine = this_machine();
        arguments.run.rows = merge_repetitions(arguments.results);
        if (arguments.runs.empty()) {
            std::ofstream{arguments.output / "results.json"} << to_text(arguments.run);
            return {.runs = {arguments.run}};
        }
        add_run(arguments.runs, arguments.run);
    }
    return newest_series(arguments.runs);
}

void write_report(Arguments& arguments) {
    const Series series = runs_to_report(arguments);
    const std::string text = report(series);
    std::ofstream{arguments.output / "table.md"} << text;
    for (const auto& [file, data] : plots(Results{by_machine(series.runs).front()})) {
        std::ofstream{arguments.plot_data / file} << data;
    }
    if (!arguments.document.empty()) {
        paste(arguments.document, text);
    }
    fmt::print("{}", text);
}

}  // namespace
}  // namespace orvane::bench::report

int main(int argc, char** argv) try {
    orvane::bench::report::Arguments arguments;
    CLI::App app{"Makes the report of runs of the benchmarks."};
    const auto* results = app.add_option("--results", arguments.results,
                                         "what the programs have measured in a new run");
    const auto* runs = app.add_option("--runs", arguments.runs,
                                      "folder of runs, which the new one is added to; without it "
                                      "the report is about the new run only");
    app.add_option("--output", arguments.output,
                   "folder of table.md, and of a single run's results.json")
        ->required();
    app.add_option("--plot-data", arguments.plot_data, "folder of the plots' data")->required();
    app.add_option("--document", arguments.document, "page whose results are replaced");
    app.add_option("--begun", arguments.run.begun, "when the new run began, in UTC");
    app.add_option("--kind", arguments.run.kind, "what was asked for");
    app.add_option("--commit", arguments.run.commit, "what was measured");
    app.add_option("--sources", arguments.run.sources, "a name of the content of that");
    app.add_option("--load", arguments.run.load, "load average before the new run");
    CLI11_PARSE(app, argc, argv);
    if (results->empty() && runs->empty()) {
        std::fprintf(stderr, "bench: give --results or --runs\n");
        return 1;
    }
    orvane::bench::report::write_report(arguments);
    return 0;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "bench: %s\n", failure.what());
    return 1;
}

// Makes the report of a run: results.json and table.md, the data of the plots, and the results in
// the documentation.
#include <fmt/format.h>
#include <sys/utsname.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>

#include "bench/report/results.hpp"
#include "bench/report/sections.hpp"
#include "bench/report/table.hpp"

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

nlohmann::json machine() {
    utsname system{};
    uname(&system);
    return {{"processor", processor()},
            {"processors", std::thread::hardware_concurrency()},
            {"system", fmt::format("{} {} {}", system.sysname, system.release, system.machine)},
            {"compiler", __VERSION__}};
}

std::string targets_table(const std::vector<Target>& targets) {
    Table table{{"target", "limit", "measured", "worst at", "verdict"}};
    for (const Target& target : targets) {
        table.add(target.row());
    }
    return "### Targets\n\n" + table.text();
}

std::string report(const Results& results, const std::string& run, const nlohmann::json& where) {
    std::string text;
    std::vector<Target> targets;
    for (const auto section : {call_section, stream_section, types_section, rest_section,
                               flood_section, viewers_section}) {
        const auto [part, judged] = section(results);
        text += part.empty() ? "" : '\n' + part;
        targets.insert(targets.end(), judged.begin(), judged.end());
    }
    return fmt::format("{}: {}, {} processors, {}, compiler {}.\n\n{}{}", run,
                       where["processor"].get<std::string>(), where["processors"].get<unsigned>(),
                       where["system"].get<std::string>(), where["compiler"].get<std::string>(),
                       targets_table(targets), text);
}

/// Replaces what stands between the marks. @return false without marks
bool paste(const std::filesystem::path& document, const std::string& text) {
    std::ostringstream content;
    content << std::ifstream{document}.rdbuf();
    std::string page = content.str();
    const std::size_t begin = page.find(begin_mark);
    const std::size_t end = page.find(end_mark);
    if (begin == std::string::npos || end == std::string::npos) {
        return false;
    }
    const std::size_t first = begin + begin_mark.size();
    page.replace(first, end - first, '\n' + text + '\n');
    std::ofstream{document} << page;
    return true;
}

struct Arguments {
    std::string results;
    std::filesystem::path output;
    std::filesystem::path plot_data;
    std::string document;
    std::string run;
};

int write_report(const Arguments& arguments) {
    const Results results = Results::load(arguments.results);
    const nlohmann::json where = machine();
    const std::string text = report(results, arguments.run, where);
    const nlohmann::json all{{"run", arguments.run}, {"machine", where}, {"rows", results.rows()}};
    std::ofstream{arguments.output / "results.json"} << all.dump(1) << '\n';
    std::ofstream{arguments.output / "table.md"} << text;
    for (const auto& [file, data] : plots(results)) {
        std::ofstream{arguments.plot_data / file} << data;
    }
    if (!arguments.document.empty() && !paste(arguments.document, text)) {
        fmt::print(stderr, "bench: {} has no place for results\n", arguments.document);
        return 1;
    }
    fmt::print("{}", text);
    return 0;
}

}  // namespace
}  // namespace orvane::bench::report

int main(int argc, char** argv) try {
    orvane::bench::report::Arguments arguments;
    CLI::App app{"Makes the report of a run of the benchmarks."};
    app.add_option("--results", arguments.results, "what the programs have measured")->required();
    app.add_option("--output", arguments.output, "folder of results.json and table.md")->required();
    app.add_option("--plot-data", arguments.plot_data, "folder of the plots' data")->required();
    app.add_option("--document", arguments.document, "page whose results are replaced");
    app.add_option("--run", arguments.run, "what was measured and when")->required();
    CLI11_PARSE(app, argc, argv);
    return orvane::bench::report::write_report(arguments);
} catch (const std::exception& failure) {
    std::fprintf(stderr, "bench: %s\n", failure.what());
    return 1;
}

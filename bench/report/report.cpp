#include "bench/report/report.hpp"

#include <fmt/format.h>

#include <vector>

#include "bench/report/results.hpp"
#include "bench/report/sections.hpp"
#include "bench/report/table.hpp"

namespace orvane::bench::report {
namespace {

std::string runs_table(const std::vector<Run>& runs) {
    Table table{{"run", "begun", "kind", "commit", "load average before"}};
    for (std::size_t run = 0; run < runs.size(); ++run) {
        table.add({std::to_string(run + 1), runs[run].begun, runs[run].kind, runs[run].commit,
                   runs[run].load});
    }
    return table.text();
}

std::string targets_table(const std::string& title, const std::vector<Target>& targets) {
    Table table{Target::head()};
    for (const Target& target : targets) {
        table.add(target.row());
    }
    return table.empty() ? "" : fmt::format("\n### {}\n\n{}", title, table.text());
}

std::string report_of_machine(const Results& results) {
    std::string sections;
    std::vector<Target> targets;
    for (const auto section : {call_section, front_ends_section, stream_section, types_section,
                               rest_section, flood_section, viewers_section, security_section}) {
        const auto [text, judged] = section(results);
        sections += text.empty() ? "" : '\n' + text;
        targets.insert(targets.end(), judged.begin(), judged.end());
    }
    const Section disturbed = disturbed_section(results);
    sections += disturbed.text.empty() ? "" : '\n' + disturbed.text;
    return fmt::format("{}:\n\n{}", results.runs()[0].machine, runs_table(results.runs())) +
           targets_table("Targets", targets) +
           targets_table("Targets of disturbed calls", disturbed.targets) + sections;
}

}  // namespace

std::string report(const Series& series) {
    std::string text;
    for (const std::vector<Run>& runs : by_machine(series.runs)) {
        text += (text.empty() ? "" : "\n") + report_of_machine(Results{runs});
    }
    if (series.others != 0) {
        text += fmt::format("\nRuns of other sources, which are not in these figures: {}.\n",
                            series.others);
    }
    return text;
}

}  // namespace orvane::bench::report

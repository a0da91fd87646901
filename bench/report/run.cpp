#include "bench/report/run.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <stdexcept>
#include <utility>

#include "bench/report/figure.hpp"

namespace orvane::bench::report {
namespace {

using nlohmann::json;

json medians(const std::vector<json>& repetitions) {
    std::map<std::string, std::vector<double>> values;
    for (const json& repetition : repetitions) {
        for (const auto& figure : repetition.items()) {
            values[figure.key()].push_back(figure.value().get<double>());
        }
    }
    json figures{{"repetitions", repetitions.size()}};
    for (auto& [name, of_figure] : values) {
        figures[name] = median(std::move(of_figure));
    }
    return figures;
}

Run read_run(const std::filesystem::path& file) try {
    const json run = json::parse(std::ifstream{file});
    return {run.at("begun"), run.at("kind"),    run.at("commit"), run.at("sources"),
            run.at("load"),  run.at("machine"), run.at("rows")};
} catch (const json::exception& failure) {
    throw std::runtime_error{fmt::format("{} is no run: {}", file.string(), failure.what())};
}

}  // namespace

json merge_repetitions(const std::filesystem::path& results) {
    std::vector<json> subjects;
    std::map<std::string, std::vector<json>> repetitions;
    std::ifstream file{results};
    for (std::string line; std::getline(file, line);) {
        json row = json::parse(line);
        json figures = std::move(row["figures"]);
        row.erase("figures");
        std::vector<json>& known = repetitions[row.dump()];
        if (known.empty()) {
            subjects.push_back(row);
        }
        known.push_back(std::move(figures));
    }
    json rows = json::array();
    for (json& row : subjects) {
        json figures = medians(repetitions[row.dump()]);
        row["figures"] = std::move(figures);
        rows.push_back(std::move(row));
    }
    return rows;
}

std::string to_text(const Run& run) {
    const json text{{"begun", run.begun},     {"kind", run.kind}, {"commit", run.commit},
                    {"sources", run.sources}, {"load", run.load}, {"machine", run.machine},
                    {"rows", run.rows}};
    return text.dump() + '\n';
}

void add_run(const std::filesystem::path& folder, const Run& run) {
    std::string name = run.begun + '-' + run.commit + ".json";
    std::erase(name, ':');
    std::filesystem::create_directories(folder);
    std::ofstream file{folder / name};
    if (!(file << to_text(run) << std::flush)) {
        throw std::runtime_error{fmt::format("cannot write {}", (folder / name).string())};
    }
}

Series newest_series(const std::filesystem::path& folder) {
    std::vector<Run> runs;
    if (std::filesystem::is_directory(folder)) {
        for (const auto& file : std::filesystem::directory_iterator{folder}) {
            runs.push_back(read_run(file));
        }
    }
    if (runs.empty()) {
        throw std::runtime_error{fmt::format("there are no runs in {}", folder.string())};
    }
    std::sort(runs.begin(), runs.end(),
              [](const Run& left, const Run& right) { return left.begun < right.begun; });
    const std::string sources = runs.back().sources;
    const std::size_t others =
        std::erase_if(runs, [&](const Run& run) { return run.sources != sources; });
    return {std::move(runs), others};
}

std::vector<std::vector<Run>> by_machine(const std::vector<Run>& runs) {
    std::vector<std::vector<Run>> machines;
    for (auto run = runs.rbegin(); run != runs.rend(); ++run) {
        const auto known = std::find_if(
            machines.begin(), machines.end(),
            [&](const std::vector<Run>& machine) { return machine[0].machine == run->machine; });
        if (known == machines.end()) {
            machines.push_back({*run});
        } else {
            known->insert(known->begin(), *run);
        }
    }
    return machines;
}

}  // namespace orvane::bench::report

#include "bench/report/results.hpp"

#include <algorithm>
#include <fstream>
#include <map>
#include <vector>

namespace orvane::bench::report {
namespace {

using nlohmann::json;

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

json medians(const std::vector<json>& repetitions) {
    json figures;
    for (const auto& figure : repetitions.front().items()) {
        const std::string& name = figure.key();
        std::vector<double> values(repetitions.size());
        std::transform(repetitions.begin(), repetitions.end(), values.begin(),
                       [&](const json& repetition) { return repetition.at(name).get<double>(); });
        figures[name] = median(std::move(values));
    }
    figures["repetitions"] = repetitions.size();
    return figures;
}

bool is_about(const json& row, const json& about) {
    return std::all_of(about.items().begin(), about.items().end(), [&](const auto& member) {
        return row.contains(member.key()) && row[member.key()] == member.value();
    });
}

}  // namespace

Results Results::load(const std::string& path) {
    std::vector<json> subjects;
    std::map<std::string, std::vector<json>> repetitions;
    std::ifstream file{path};
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
    Results results;
    for (json& row : subjects) {
        json figures = medians(repetitions[row.dump()]);
        row["figures"] = std::move(figures);
        results.rows_.push_back(std::move(row));
    }
    return results;
}

std::optional<double> Results::figure(const json& about, const std::string& name) const {
    const auto row = std::find_if(rows_.begin(), rows_.end(), [&](const json& candidate) {
        return is_about(candidate, about);
    });
    if (row == rows_.end() || !(*row)["figures"].contains(name)) {
        return std::nullopt;
    }
    return (*row)["figures"][name].get<double>();
}

std::optional<double> ratio(std::optional<double> numerator, std::optional<double> denominator) {
    if (!numerator || !denominator || *denominator <= 0) {
        return std::nullopt;
    }
    return *numerator / *denominator;
}

}  // namespace orvane::bench::report

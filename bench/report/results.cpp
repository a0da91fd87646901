#include "bench/report/results.hpp"

#include <algorithm>

namespace orvane::bench::report {
namespace {

using nlohmann::json;

bool is_about(const json& row, const json& about) {
    return std::all_of(about.items().begin(), about.items().end(), [&](const auto& member) {
        return row.contains(member.key()) && row[member.key()] == member.value();
    });
}

std::optional<double> figure_of(const Run& run, const json& about, const std::string& name) {
    const auto row = std::find_if(run.rows.begin(), run.rows.end(), [&](const json& candidate) {
        return is_about(candidate, about);
    });
    return row != run.rows.end() && row->at("figures").contains(name)
               ? std::optional{row->at("figures")[name].get<double>()}
               : std::nullopt;
}

}  // namespace

Figure Results::figure(const json& about, const std::string& name) const {
    std::vector<std::optional<double>> values(runs_.size());
    std::transform(runs_.begin(), runs_.end(), values.begin(),
                   [&](const Run& run) { return figure_of(run, about, name); });
    return Figure{std::move(values)};
}

bool Results::has(const std::string& group) const {
    return std::any_of(runs_.begin(), runs_.end(), [&](const Run& run) {
        return std::any_of(run.rows.begin(), run.rows.end(),
                           [&](const json& row) { return row["group"] == group; });
    });
}

}  // namespace orvane::bench::report

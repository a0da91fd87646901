/// @file results.hpp
/// @brief What several runs on the same machine have measured.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "bench/report/figure.hpp"
#include "bench/report/run.hpp"

namespace orvane::bench::report {

class Results {
public:
    explicit Results(std::vector<Run> runs) : runs_{std::move(runs)} {}

    const std::vector<Run>& runs() const { return runs_; }
    /// A figure of the row that has all members of @p about.
    Figure figure(const nlohmann::json& about, const std::string& name) const;
    /// Whether any run has measured something of the group.
    bool has(const std::string& group) const;

private:
    std::vector<Run> runs_;
};

}  // namespace orvane::bench::report

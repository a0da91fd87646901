/// @file results.hpp
/// @brief What the benchmark programs have measured.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

namespace orvane::bench::report {

/// Rows of figures. What a row is about are its members but "figures"; rows about the same are
/// repetitions, and have become one row of medians.
class Results {
public:
    /// Reads a file with a row of JSON on each line.
    static Results load(const std::string& path);

    /// A figure of the row that has all members of @p about.
    /// @return nothing if that has not been measured
    std::optional<double> figure(const nlohmann::json& about, const std::string& name) const;
    const nlohmann::json& rows() const { return rows_; }

private:
    nlohmann::json rows_ = nlohmann::json::array();
};

/// A quotient, of what has been measured.
std::optional<double> ratio(std::optional<double> numerator, std::optional<double> denominator);

}  // namespace orvane::bench::report

/// @file figure.hpp
/// @brief A figure as several runs have measured it.
#pragma once

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace orvane::bench::report {

/// The middle value, or the mean of the two in the middle.
/// @param values at least one
double median(std::vector<double> values);

/// A value of each run, and nothing for a run that has not measured it.
class Figure {
public:
    Figure() = default;
    explicit Figure(std::vector<std::optional<double>> values) : values_{std::move(values)} {}

    const std::vector<std::optional<double>>& values() const { return values_; }
    /// How many runs have measured it.
    std::size_t count() const;
    bool measured() const { return count() != 0; }
    /// Of the runs that have measured it. @return nothing if none has
    std::optional<double> median() const;

private:
    std::vector<std::optional<double>> values_;
};

// Both work on figures of the same runs, with the two values of each run.
Figure operator-(const Figure& left, const Figure& right);
/// A run whose denominator is not positive has no value.
Figure ratio(const Figure& numerator, const Figure& denominator);

}  // namespace orvane::bench::report

/// @file table.hpp
/// @brief Tables in Markdown, and the texts in their cells.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace orvane::bench::report {

/// The first column is set to the left, the others to the right.
class Table {
public:
    explicit Table(std::vector<std::string> head) : head_{std::move(head)} {}
    void add(std::vector<std::string> row) { rows_.push_back(std::move(row)); }
    bool empty() const { return rows_.empty(); }
    std::string text() const;

private:
    std::vector<std::string> head_;
    std::vector<std::vector<std::string>> rows_;
};

/// What stands in a cell without a figure.
constexpr const char* not_measured = "not measured";

std::string duration(std::optional<double> nanoseconds);
std::string number(std::optional<double> value, int decimals = 0);

/// A rule that figures of one run have to keep, and the figure that keeps it worst.
class Target {
public:
    enum class Kind { at_most, at_least };
    Target(std::string what, Kind kind, double limit, std::string unit = {})
        : what_{std::move(what)}, kind_{kind}, limit_{limit}, unit_{std::move(unit)} {}

    void judge(std::optional<double> value, const std::string& where = {});
    /// What, limit, worst figure, where that was, and the verdict.
    std::vector<std::string> row() const;

private:
    bool is_worse(double value, double than) const {
        return kind_ == Kind::at_most ? value > than : value < than;
    }

    std::string what_;
    Kind kind_;
    double limit_;
    std::string unit_;
    std::optional<double> worst_;
    std::string where_;
};

}  // namespace orvane::bench::report

/// @file table.hpp
/// @brief Tables in Markdown, and the texts in their cells.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "bench/report/figure.hpp"

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

// The median over the runs.
std::string duration(const Figure& nanoseconds);
std::string number(const Figure& figure, int decimals = 0);

/// A rule that figures have to keep. What counts is the median over the runs, of the figure whose
/// median is worst. Beside it stands the worst value of all figures and runs.
class Target {
public:
    enum class Kind { at_most, at_least };
    Target(std::string what, Kind kind, double limit, std::string unit = {})
        : what_{std::move(what)}, kind_{kind}, limit_{limit}, unit_{std::move(unit)} {}

    void judge(const Figure& figure, const std::string& where = {});
    /// The columns of row().
    static std::vector<std::string> head();
    std::vector<std::string> row() const;

private:
    struct Extreme {
        std::optional<double> value;
        std::string where;
    };

    bool is_worse(double value, double than) const {
        return kind_ == Kind::at_most ? value > than : value < than;
    }
    void note(Extreme& worst, std::optional<double> value, const std::string& where) const;
    std::string text(const Extreme& extreme) const;

    std::string what_;
    Kind kind_;
    double limit_;
    std::string unit_;
    Extreme median_;
    Extreme worst_;
    /// The runs behind the figure that the fewest have measured.
    std::optional<std::size_t> runs_;
};

}  // namespace orvane::bench::report

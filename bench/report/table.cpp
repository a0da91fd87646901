#include "bench/report/table.hpp"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

namespace orvane::bench::report {

std::string Table::text() const {
    std::string text = fmt::format("| {} |\n|---|", fmt::join(head_, " | "));
    for (std::size_t column = 1; column < head_.size(); ++column) {
        text += "--:|";
    }
    text += '\n';
    for (const auto& row : rows_) {
        text += fmt::format("| {} |\n", fmt::join(row, " | "));
    }
    return text;
}

std::string duration(const Figure& nanoseconds) {
    const std::optional<double> median = nanoseconds.median();
    if (!median) {
        return not_measured;
    }
    const double value = *median;
    return value < 10      ? fmt::format("{:.1f} ns", value)
           : value < 9'999 ? fmt::format("{:.0f} ns", value)
           : value < 1e7   ? fmt::format("{:.1f} µs", value / 1e3)
                           : fmt::format("{:.1f} ms", value / 1e6);
}

std::string number(const Figure& figure, int decimals) {
    const std::optional<double> median = figure.median();
    return median ? fmt::format("{:.{}f}", *median, decimals) : not_measured;
}

void Target::note(Extreme& worst, std::optional<double> value, const std::string& where) const {
    if (value && (!worst.value || is_worse(*value, *worst.value))) {
        worst = {value, where};
    }
}

void Target::judge(const Figure& figure, const std::string& where) {
    if (!figure.measured()) {
        return;
    }
    note(median_, figure.median(), where);
    for (std::size_t run = 0; run < figure.values().size(); ++run) {
        note(worst_, figure.values()[run],
             fmt::format("{}{}run {}", where, where.empty() ? "" : ", ", run + 1));
    }
    runs_ = std::min(runs_.value_or(figure.count()), figure.count());
}

std::vector<std::string> Target::head() {
    return {"target", "limit", "median", "at", "worst", "at", "runs", "verdict"};
}

std::string Target::text(const Extreme& extreme) const {
    return extreme.value ? fmt::format("{:.2f}{}", *extreme.value, unit_) : "";
}

std::vector<std::string> Target::row() const {
    const char* verdict = !median_.value                     ? not_measured
                          : is_worse(*median_.value, limit_) ? "**missed**"
                                                             : "met";
    return {what_,
            fmt::format("{} {}{}", kind_ == Kind::at_most ? "≤" : "≥", limit_, unit_),
            text(median_),
            median_.where,
            text(worst_),
            worst_.where,
            std::to_string(runs_.value_or(0)),
            verdict};
}

}  // namespace orvane::bench::report

#include "bench/report/table.hpp"

#include <fmt/format.h>
#include <fmt/ranges.h>

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

std::string duration(std::optional<double> nanoseconds) {
    if (!nanoseconds) {
        return not_measured;
    }
    const double value = *nanoseconds;
    return value < 10      ? fmt::format("{:.1f} ns", value)
           : value < 9'999 ? fmt::format("{:.0f} ns", value)
           : value < 1e7   ? fmt::format("{:.1f} µs", value / 1e3)
                           : fmt::format("{:.1f} ms", value / 1e6);
}

std::string number(std::optional<double> value, int decimals) {
    return value ? fmt::format("{:.{}f}", *value, decimals) : not_measured;
}

void Target::judge(std::optional<double> value, const std::string& where) {
    if (value && (!worst_ || is_worse(*value, *worst_))) {
        worst_ = value;
        where_ = where;
    }
}

std::vector<std::string> Target::row() const {
    const char* verdict = !worst_ ? not_measured : is_worse(*worst_, limit_) ? "**missed**" : "met";
    return {what_, fmt::format("{} {}{}", kind_ == Kind::at_most ? "≤" : "≥", limit_, unit_),
            worst_ ? number(worst_, 2) + unit_ : "", where_, verdict};
}

}  // namespace orvane::bench::report

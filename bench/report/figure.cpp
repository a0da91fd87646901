#include "bench/report/figure.hpp"

#include <algorithm>

namespace orvane::bench::report {
namespace {

template <typename Operation>
Figure for_each_run(const Figure& left, const Figure& right, Operation operation) {
    std::vector<std::optional<double>> values(left.values().size());
    std::transform(left.values().begin(), left.values().end(), right.values().begin(),
                   values.begin(), [&](const auto& of_left, const auto& of_right) {
                       return of_left && of_right ? operation(*of_left, *of_right) : std::nullopt;
                   });
    return Figure{std::move(values)};
}

}  // namespace

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 != 0 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

std::size_t Figure::count() const {
    return static_cast<std::size_t>(std::count_if(
        values_.begin(), values_.end(), [](const auto& value) { return value.has_value(); }));
}

std::optional<double> Figure::median() const {
    std::vector<double> measured;
    for (const std::optional<double>& value : values_) {
        if (value) {
            measured.push_back(*value);
        }
    }
    return measured.empty() ? std::nullopt : std::optional{report::median(std::move(measured))};
}

Figure operator-(const Figure& left, const Figure& right) {
    return for_each_run(left, right, [](double minuend, double subtrahend) {
        return std::optional{minuend - subtrahend};
    });
}

Figure ratio(const Figure& numerator, const Figure& denominator) {
    return for_each_run(numerator, denominator, [](double over, double under) {
        return under > 0 ? std::optional{over / under} : std::nullopt;
    });
}

}  // namespace orvane::bench::report

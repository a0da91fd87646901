#include "tools/text/scaled_number.hpp"

#include <algorithm>
#include <limits>
#include <span>

#include "tools/text/named_numbers.hpp"

namespace orvane::tools {
namespace {

struct Unit {
    char letter;
    std::uint64_t size;
};
constexpr Unit byte_units[] = {{'k', 1U << 10U}, {'M', 1U << 20U}, {'G', 1U << 30U}};
constexpr Unit second_units[] = {{'s', 1}, {'m', 60}, {'h', 3600}};

std::optional<std::uint64_t> parse(std::string_view text, std::span<const Unit> units,
                                   std::uint64_t largest) {
    std::uint64_t size = 1;
    const auto unit = std::find_if(units.begin(), units.end(),
                                   [&](const Unit& each) { return text.ends_with(each.letter); });
    if (unit != units.end()) {
        size = unit->size;
        text.remove_suffix(1);
    }
    const auto number = parse_number<std::uint64_t>(text, 10);
    return number && *number > 0 && *number <= largest / size ? std::optional{*number * size}
                                                              : std::nullopt;
}

}  // namespace

std::optional<std::uint64_t> parse_size(std::string_view text) {
    return parse(text, byte_units, std::numeric_limits<std::int64_t>::max());
}

std::optional<std::uint64_t> parse_duration(std::string_view text) {
    constexpr std::uint64_t year = 365UL * 24 * 3600;
    return parse(text, second_units, year);
}

}  // namespace orvane::tools

#include "tools/text/named_numbers.hpp"

#include <strings.h>

#include <algorithm>

namespace orvane::tools {
namespace {

bool equal_in_any_case(std::string_view left, std::string_view right) {
    return left.size() == right.size() && strncasecmp(left.data(), right.data(), left.size()) == 0;
}

}  // namespace

std::optional<std::int32_t> number_of_name(NamedNumbers numbers, std::string_view text) {
    const auto named = std::find_if(numbers.begin(), numbers.end(), [&](const NamedNumber& each) {
        return equal_in_any_case(each.name, text);
    });
    return named == numbers.end() ? std::nullopt : std::optional{named->number};
}

std::optional<std::int32_t> number_of_text(NamedNumbers numbers, std::string_view text) {
    if (const auto named = number_of_name(numbers, text)) {
        return named;
    }
    const auto number = parse_number<std::int32_t>(text, 10);
    return number && !name_of_number(numbers, *number).empty() ? number : std::nullopt;
}

std::string_view name_of_number(NamedNumbers numbers, std::int32_t number) {
    const auto named = std::find_if(numbers.begin(), numbers.end(),
                                    [&](const NamedNumber& each) { return each.number == number; });
    return named == numbers.end() ? std::string_view{} : named->name;
}

std::string names_of(NamedNumbers numbers) {
    std::string names;
    for (const NamedNumber& each : numbers) {
        names += names.empty() ? "" : ", ";
        names += each.name;
    }
    return names;
}

}  // namespace orvane::tools

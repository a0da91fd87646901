#include "platform/dds/filter/fault.hpp"

#include <algorithm>

namespace pexa::dds {

std::span<char> begin_fault(FilterFault& fault, const FilterPlace& place) {
    fault.position = place.position + 1;
    fault.parameter = place.parameter;
    const std::span<char> text(fault.text);
    const int length =
        place.parameter < 0
            ? std::snprintf(text.data(), text.size(), "character %zu: ", fault.position)
            : std::snprintf(text.data(), text.size(),
                            "parameter %%%d, character %zu: ", place.parameter, fault.position);
    return text.subspan(static_cast<std::size_t>(length));
}

Success set_unexpected(FilterFault& fault, const SqlToken& token, int parameter,
                       const char* expected) {
    const FilterPlace place{token.position, parameter};
    const int length = quotation_length(token.source);
    if (token.kind == SqlTokenKind::invalid) {
        return set_fault(fault, place, "%s: %.*s", token.fault, length, token.source.data());
    }
    if (token.kind == SqlTokenKind::end) {
        return set_fault(fault, place, "expected %s, found the end", expected);
    }
    return set_fault(fault, place, "expected %s, found %.*s", expected, length,
                     token.source.data());
}

int quotation_length(std::string_view text) {
    constexpr std::size_t longest = 60;
    return static_cast<int>(std::min(text.size(), longest));
}

}  // namespace pexa::dds

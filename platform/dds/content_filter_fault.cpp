#include "dds/content_filter_fault.hpp"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace pexa::dds {

void set_fault(FilterFault& fault, const FilterPlace& place, const char* format, ...) {
    fault.position = place.position + 1;
    fault.parameter = place.parameter;
    char* text = fault.text.data();
    const std::size_t size = fault.text.size();
    const int prefix =
        place.parameter < 0
            ? std::snprintf(text, size, "character %zu: ", fault.position)
            : std::snprintf(text, size, "parameter %%%d, character %zu: ", place.parameter,
                            fault.position);
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text + prefix, size - static_cast<std::size_t>(prefix), format, arguments);
    va_end(arguments);
}

void set_unexpected(FilterFault& fault, const SqlToken& token, int parameter,
                    const char* expected) {
    const FilterPlace place{token.position, parameter};
    const int length = quotation_length(token.source);
    if (token.kind == SqlTokenKind::invalid) {
        set_fault(fault, place, "%s: %.*s", token.fault, length, token.source.data());
    } else if (token.kind == SqlTokenKind::end) {
        set_fault(fault, place, "expected %s, found the end", expected);
    } else {
        set_fault(fault, place, "expected %s, found %.*s", expected, length, token.source.data());
    }
}

int quotation_length(std::string_view text) {
    constexpr std::size_t longest = 60;
    return static_cast<int>(std::min(text.size(), longest));
}

}  // namespace pexa::dds

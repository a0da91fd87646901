#include "xml/text_numbers.hpp"

#include <cerrno>
#include <cstdlib>

#include "orvane/xml.h"

namespace orvane::xml {

std::optional<DDS_Long> leading_number(const char* text, Base base) noexcept {
    if (text == nullptr) {
        return std::nullopt;
    }
    char* end = nullptr;
    const long long number = std::strtoll(text, &end, static_cast<int>(base));
    return end != text ? std::optional(static_cast<DDS_Long>(number)) : std::nullopt;
}

std::optional<DDS_Long> positive_number(const char* text, DDS_Long minimum,
                                        const ParseReport& report) {
    const auto number = leading_number(text, Base::FromPrefix);
    const char* refusal = !number             ? integer_expected
                          : errno == ERANGE   ? "integer out of bounds in XML text"
                          : *number < minimum ? "positive integer expected"
                                              : nullptr;
    if (refusal != nullptr) {
        report.refuse(refusal);
        return std::nullopt;
    }
    return number;
}

void read_queue_size(DDS_Long& size, const ElementText& element) {
    if (const auto number =
            positive_number(element.text, 1, element.report_as("QEL_KX_XMLConfig_getQueueSize"))) {
        size = *number;
    }
}

}  // namespace orvane::xml

void QEL_KX_XMLConfig_getQueueSize(DDS_Long* out, const char* text, DDS_XMLContext* context,
                                   DDS_XMLParseErrorFunction parseErrorFunction) {
    orvane::xml::read_queue_size(*out, {text, context, parseErrorFunction});
}

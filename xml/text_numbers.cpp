#include "xml/text_numbers.hpp"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "orvane/xml.h"

namespace orvane::xml {
namespace {

struct LevelName {
    DDS_Long level;
    const char* name;
};

constexpr LevelName level_names[] = {
    {QEL_KX_LEVEL_SILENT, "SILENT"},   {QEL_KX_LEVEL_FATAL, "FATAL"},
    {QEL_KX_LEVEL_SEVERE, "SEVERE"},   {QEL_KX_LEVEL_ERROR, "ERROR"},
    {QEL_KX_LEVEL_WARNING, "WARNING"}, {QEL_KX_LEVEL_NOTICE, "NOTICE"},
    {QEL_KX_LEVEL_INFO, "INFO"},       {QEL_KX_LEVEL_DEBUG, "DEBUG"},
    {QEL_KX_LEVEL_TRACE, "TRACE"},
};

std::optional<DDS_Long> named_level(const char* name) noexcept {
    for (const LevelName& row : level_names) {
        if (std::strcmp(row.name, name) == 0) {
            return row.level;
        }
    }
    return std::nullopt;
}

DDS_UnsignedLong filter_level(const char* text, const ParseReport& report) {
    if (text == nullptr) {
        report.refuse("null string found for filter level");
        return QEL_KX_XML_INVALID_FILTER_LEVEL;
    }
    if (const auto level = named_level(text)) {
        return static_cast<DDS_UnsignedLong>(*level);
    }
    const auto number = leading_number(text, Base::Decimal);
    if (!number) {
        report.refuse(integer_expected);
        return QEL_KX_XML_INVALID_FILTER_LEVEL;
    }
    if (*number < 0) {
        report.refuse("negative integer not allowed for filter level");
        return QEL_KX_XML_INVALID_FILTER_LEVEL;
    }
    return static_cast<DDS_UnsignedLong>(*number);
}

}  // namespace

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

const char* level_name(DDS_Long level) noexcept {
    for (const LevelName& row : level_names) {
        if (row.level == level) {
            return row.name;
        }
    }
    return nullptr;
}

}  // namespace orvane::xml

namespace xml = orvane::xml;

DDS_UnsignedLong QEL_KX_XMLConfig_getFilterLevelFromString(
    const char* text, DDS_XMLContext* context, DDS_XMLParseErrorFunction parseErrorFunction) {
    return xml::filter_level(
        text, {"QEL_KX_XMLConfig_getFilterLevelFromString", context, parseErrorFunction});
}

void QEL_KX_XMLConfig_getQueueSize(DDS_Long* out, const char* text, DDS_XMLContext* context,
                                   DDS_XMLParseErrorFunction parseErrorFunction) {
    if (const auto size = xml::positive_number(
            text, 1, {"QEL_KX_XMLConfig_getQueueSize", context, parseErrorFunction})) {
        *out = *size;
    }
}

#include <algorithm>
#include <cstring>

#include "orvane/xml.h"
#include "xml/text_numbers.hpp"
#include "xml/thread_setting_names.hpp"

namespace orvane::xml {
namespace {

constexpr std::size_t mask_buffer_size = 2048;
constexpr const char* not_trimmed = "error trimming thread settings mask string";

/// @return whether @p token is known; its bits are then added.
bool add_bits(DDS_UnsignedLong& mask, const char* token) {
    if (no_mask_bits.is_spelled(token)) {
        return true;
    }
    for (const auto& bit : mask_bits) {
        if (bit.name.is_spelled(token)) {
            mask |= bit.value;
            return true;
        }
    }
    return false;
}

char* end_at_bar(char* text) noexcept {
    char* bar = text != nullptr ? std::strchr(text, '|') : nullptr;
    if (bar == nullptr) {
        return nullptr;
    }
    *bar = '\0';
    return bar + 1;
}

/// Adds the bits of all names in @p text, which is taken apart. @return whether all are known.
bool add_all_bits(DDS_UnsignedLong& mask, char* text, const ParseReport& report) {
    for (char* token = text; token != nullptr;) {
        char* rest = QEL_KX_XMLConfig_separateFirstElementFromMask(token);
        if (QELXMLHelper_strTrim(token) == nullptr) {
            report.refuse(not_trimmed);
        }
        if (!add_bits(mask, token)) {
            return false;
        }
        token = rest;
    }
    return true;
}

bool is_blank(const char* text) noexcept {
    return text[std::strspn(text, " \t\r\n")] == '\0';
}

void read_mask(DDS_UnsignedLong& mask, const char* text, const ParseReport& report) {
    mask = 0;
    if (text == nullptr) {
        report.refuse(not_trimmed);
        return;
    }
    char buffer[mask_buffer_size] = {};
    const std::size_t taken = std::min(std::strlen(text), sizeof buffer - 1);
    std::memcpy(buffer, text, taken);
    if (QELXMLHelper_strTrim(buffer) == nullptr) {
        report.refuse(not_trimmed);
        return;
    }
    const bool known = buffer[0] == '\0' || add_all_bits(mask, buffer, report);
    if (!known || !is_blank(text + taken)) {
        report.refuse("illegal value on thread mask XML tag");
    }
}

void read_priority(DDS_Long& priority, const char* text, const ParseReport& report) {
    const auto is_spelled = [&](const SettingName& name) { return name.is_spelled(text); };
    if (std::any_of(std::begin(priorities), std::end(priorities), is_spelled)) {
        priority = DDS_THREAD_PRIORITY_DEFAULT;
        return;
    }
    const auto number = leading_number(text, Base::Decimal);
    priority = number.value_or(0);
    if (!number) {
        report.refuse(integer_expected);
    }
}

void read_stack_size(DDS_Long& size, const char* text, const ParseReport& report) {
    if (default_stack_size.is_spelled(text)) {
        size = DDS_THREAD_STACK_SIZE_DEFAULT;
    } else if (const auto number = positive_number(text, 0, report)) {
        size = *number;
    }
}

void read_rotation(DDS_ThreadSettingsCpuRotationKind& rotation, const char* text,
                   const ParseReport& report) {
    for (const auto& kind : rotations) {
        if (kind.name.is_spelled(text)) {
            rotation = kind.value;
            return;
        }
    }
    report.refuse("error getting cpu_rotation");
}

void add_cpu(DDS_LongSeq& cpus, const char* text, const ParseReport& report) {
    const DDS_Long count = DDS_LongSeq_get_length(&cpus);
    if (DDS_LongSeq_ensure_length(&cpus, count + 1, count + 1) == DDS_BOOLEAN_FALSE) {
        report.refuse("failed to ensure sequence length");
        return;
    }
    if (const auto number = positive_number(text, 0, report)) {
        *DDS_LongSeq_get_reference(&cpus, count) = *number;
    }
}

}  // namespace
}  // namespace orvane::xml

namespace xml = orvane::xml;

char* QEL_KX_XMLConfig_separateFirstElementFromMask(char* text) {
    return xml::end_at_bar(text);
}

void QEL_KX_XMLConfig_getThreadSettingsKindMask(DDS_UnsignedLong* mask, const char* text,
                                                DDS_XMLContext* context,
                                                DDS_XMLParseErrorFunction parseErrorFunction) {
    xml::read_mask(*mask, text,
                   {"QEL_KX_XMLConfig_getThreadSettingsKindMask", context, parseErrorFunction});
}

void QEL_KX_XMLConfig_getThreadPriority(DDS_Long* priority, const char* text,
                                        DDS_XMLContext* context,
                                        DDS_XMLParseErrorFunction parseErrorFunction) {
    xml::read_priority(*priority, text,
                       {"QEL_KX_XMLConfig_getThreadPriority", context, parseErrorFunction});
}

void QEL_KX_XMLConfig_getThreadStackSize(DDS_Long* stackSize, const char* text,
                                         DDS_XMLContext* context,
                                         DDS_XMLParseErrorFunction parseErrorFunction) {
    xml::read_stack_size(*stackSize, text,
                         {"QEL_KX_XMLConfig_getThreadStackSize", context, parseErrorFunction});
}

void QEL_KX_XMLConfig_getThreadCpuRotation(DDS_ThreadSettingsCpuRotationKind* rotation,
                                           const char* text, DDS_XMLContext* context,
                                           DDS_XMLParseErrorFunction parseErrorFunction) {
    xml::read_rotation(*rotation, text,
                       {"QEL_KX_XMLConfig_getCpuRotation", context, parseErrorFunction});
}

void QEL_KX_XMLConfig_addElementToThreadCpuList(DDS_LongSeq* cpuList, const char* text,
                                                DDS_XMLContext* context,
                                                DDS_XMLParseErrorFunction parseErrorFunction) {
    xml::add_cpu(*cpuList, text,
                 {"QEL_KX_XMLConfig_addElementToCpuList", context, parseErrorFunction});
}

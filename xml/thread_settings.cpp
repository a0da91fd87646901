#include "xml/thread_settings.hpp"

#include <algorithm>
#include <cstring>

#include "orvane/xml.h"
#include "platform/internal/number_of.hpp"
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
        char* rest = end_at_bar(token);
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

}  // namespace

void read_mask(DDS_UnsignedLong& mask, const ElementText& element) {
    const ParseReport report = element.report_as("QEL_KX_XMLConfig_getThreadSettingsKindMask");
    const char* text = element.text;
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

void write_mask(const char* name, DDS_UnsignedLong mask, QELXMLSaveContext* context) {
    QELXMLSaveContext_indent(context);
    DDS_XMLHelper_save_freeform(context, "<%s>", name);
    const char* separator = "";
    for (const auto& bit : mask_bits) {
        if ((mask & bit.value) != 0) {
            DDS_XMLHelper_save_freeform(context, "%s%s", separator, bit.name.to_be_written());
            separator = " | ";
        }
    }
    DDS_XMLHelper_save_freeform(context, "</%s>\n", name);
}

void read_priority(DDS_Long& priority, const ElementText& element) {
    const auto is_spelled = [&](const SettingName& name) { return name.is_spelled(element.text); };
    if (std::any_of(std::begin(priorities), std::end(priorities), is_spelled)) {
        priority = DDS_THREAD_PRIORITY_DEFAULT;
        return;
    }
    const auto number = leading_number(element.text, Base::Decimal);
    priority = number.value_or(0);
    if (!number) {
        element.report_as("QEL_KX_XMLConfig_getThreadPriority").refuse(integer_expected);
    }
}

void write_priority(const char* name, DDS_Long priority, QELXMLSaveContext* context) {
    if (priority != DDS_THREAD_PRIORITY_DEFAULT) {
        DDS_XMLHelper_save_long(name, priority, context);
        return;
    }
    QELXMLSaveContext_indent(context);
    DDS_XMLHelper_save_freeform(context, "<%s>%s</%s>\n", name, default_priority.to_be_written(),
                                name);
}

void read_stack_size(DDS_Long& size, const ElementText& element) {
    if (default_stack_size.is_spelled(element.text)) {
        size = DDS_THREAD_STACK_SIZE_DEFAULT;
    } else if (const auto number = positive_number(
                   element.text, 0, element.report_as("QEL_KX_XMLConfig_getThreadStackSize"))) {
        size = *number;
    }
}

void write_stack_size(const char* name, DDS_Long size, QELXMLSaveContext* context) {
    if (size != DDS_THREAD_STACK_SIZE_DEFAULT) {
        DDS_XMLHelper_save_long(name, size, context);
    }
}

void add_cpu(DDS_LongSeq& cpus, const ElementText& element) {
    const ParseReport report = element.report_as("QEL_KX_XMLConfig_addElementToCpuList");
    const DDS_Long count = DDS_LongSeq_get_length(&cpus);
    if (DDS_LongSeq_ensure_length(&cpus, count + 1, count + 1) == DDS_BOOLEAN_FALSE) {
        report.refuse("failed to ensure sequence length");
        return;
    }
    if (const auto number = positive_number(element.text, 0, report)) {
        *DDS_LongSeq_get_reference(&cpus, count) = *number;
    }
}

void write_cpus(const char* name, const DDS_LongSeq& cpus, QELXMLSaveContext* context) {
    DDS_XMLHelper_save_long_seq(name, &cpus, context);
}

void read_rotation(DDS_ThreadSettingsCpuRotationKind& rotation, const ElementText& element) {
    for (const auto& kind : rotations) {
        if (kind.name.is_spelled(element.text)) {
            rotation = kind.value;
            return;
        }
    }
    element.report_as("QEL_KX_XMLConfig_getCpuRotation").refuse("error getting cpu_rotation");
}

void write_rotation(const char* name, const DDS_ThreadSettingsCpuRotationKind& rotation,
                    QELXMLSaveContext* context) {
    const DDS_Long number = pexa::number_of(rotation);
    for (const auto& kind : rotations) {
        if (kind.value == number) {
            DDS_XMLHelper_save_string(name, kind.name.to_be_written(), context);
            return;
        }
    }
    context->error = 1;
}

}  // namespace orvane::xml

namespace xml = orvane::xml;

char* QEL_KX_XMLConfig_separateFirstElementFromMask(char* text) {
    return xml::end_at_bar(text);
}

void QEL_KX_XMLConfig_getThreadSettingsKindMask(DDS_UnsignedLong* mask, const char* text,
                                                DDS_XMLContext* context,
                                                DDS_XMLParseErrorFunction parseErrorFunction) {
    xml::read_mask(*mask, {text, context, parseErrorFunction});
}

void QEL_KX_XMLConfig_getThreadPriority(DDS_Long* priority, const char* text,
                                        DDS_XMLContext* context,
                                        DDS_XMLParseErrorFunction parseErrorFunction) {
    xml::read_priority(*priority, {text, context, parseErrorFunction});
}

void QEL_KX_XMLConfig_getThreadStackSize(DDS_Long* stackSize, const char* text,
                                         DDS_XMLContext* context,
                                         DDS_XMLParseErrorFunction parseErrorFunction) {
    xml::read_stack_size(*stackSize, {text, context, parseErrorFunction});
}

void QEL_KX_XMLConfig_getThreadCpuRotation(DDS_ThreadSettingsCpuRotationKind* rotation,
                                           const char* text, DDS_XMLContext* context,
                                           DDS_XMLParseErrorFunction parseErrorFunction) {
    xml::read_rotation(*rotation, {text, context, parseErrorFunction});
}

void QEL_KX_XMLConfig_addElementToThreadCpuList(DDS_LongSeq* cpuList, const char* text,
                                                DDS_XMLContext* context,
                                                DDS_XMLParseErrorFunction parseErrorFunction) {
    xml::add_cpu(*cpuList, {text, context, parseErrorFunction});
}

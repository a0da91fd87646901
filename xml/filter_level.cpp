#include "xml/filter_level.hpp"

#include <cstring>
#include <optional>

#include "core/instance.hpp"
#include "core/level_names.hpp"
#include "pexa/osapi.h"
#include "xml/text_numbers.hpp"

namespace orvane::xml {
namespace {

std::optional<DDS_Long> named_level(const char* text) noexcept {
    for (const core::LevelName& row : core::level_names) {
        if (std::strcmp(row.configured, text) == 0) {
            return row.level;
        }
    }
    return std::nullopt;
}

/// @return the name, or NULL.
const char* name_of(DDS_Long level) noexcept {
    for (const core::LevelName& row : core::level_names) {
        if (row.level == level) {
            return row.configured;
        }
    }
    return nullptr;
}

}  // namespace

DDS_UnsignedLong read_filter_level(const ElementText& element) {
    const ParseReport report = element.report_as("QEL_KX_XMLConfig_getFilterLevelFromString");
    if (element.text == nullptr) {
        report.refuse("null string found for filter level");
        return QEL_KX_XML_INVALID_FILTER_LEVEL;
    }
    if (const auto level = named_level(element.text)) {
        return static_cast<DDS_UnsignedLong>(*level);
    }
    const auto number = leading_number(element.text, Base::Decimal);
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

DDS_Long filter_level_in_force(DDS_Long option) {
    DDS_Long level = option;
    // The lock keeps the instance from ending meanwhile.
    if (core::is_running() && QELOsapi_global_lock() == 0) {
        if (const QEL_KX_Orvane* running = core::instance(); running != nullptr) {
            level = core::load(running->filterLevel);
        }
        QELOsapi_global_unlock();
    }
    return level;
}

void write_filter_level(const char* name, DDS_Long level, QELXMLSaveContext* context) {
    QELXMLSaveContext_indent(context);
    if (const char* level_name = name_of(level); level_name != nullptr) {
        DDS_XMLHelper_save_freeform(context, "<%s>%s</%s>\n", name, level_name, name);
    } else {
        DDS_XMLHelper_save_freeform(context, "<%s>%u</%s>\n", name,
                                    static_cast<DDS_UnsignedLong>(level), name);
    }
}

}  // namespace orvane::xml

DDS_UnsignedLong QEL_KX_XMLConfig_getFilterLevelFromString(
    const char* text, DDS_XMLContext* context, DDS_XMLParseErrorFunction parseErrorFunction) {
    return orvane::xml::read_filter_level({text, context, parseErrorFunction});
}

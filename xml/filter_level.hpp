/// @file filter_level.hpp
/// @brief The filter level as a text.
#pragma once

#include "orvane/xml.h"
#include "xml/parse_report.hpp"

namespace orvane::xml {

/// @return the level, or QEL_KX_XML_INVALID_FILTER_LEVEL after a report.
DDS_UnsignedLong read_filter_level(const ElementText& element);

/// The level of the running logger, which remote tools may have changed, or else @p option.
DDS_Long filter_level_in_force(DDS_Long option);

void write_filter_level(const char* name, DDS_Long level, QELXMLSaveContext* context);

}  // namespace orvane::xml

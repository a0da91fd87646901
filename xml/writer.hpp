/// @file writer.hpp
/// @brief Writing an `orvane` element.
#pragma once

#include "orvane/xml.h"

namespace orvane::xml {

/// Writes thread settings as an element of that name; nothing when they are the defaults. A setting
/// that cannot be written leaves the element unfinished with the error indicator set.
void save_thread_settings(const char* tag_name, const DDS_ThreadSettings_t& settings,
                          QELXMLSaveContext* context);

}  // namespace orvane::xml

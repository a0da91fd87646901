/// @file config_object.hpp
/// @brief The object of an `orvane` element in the middleware's tree.
#pragma once

#include <cstddef>

#include "orvane/xml.h"

namespace orvane::xml {

inline constexpr const char* element_name = "orvane";

// Both ways between the platform's object and the library's record are a cast.
static_assert(offsetof(QEL_KX_XMLConfig, object) == 0);

inline QEL_KX_XMLConfig* config_of(DDS_XMLObject* object) noexcept {
    return reinterpret_cast<QEL_KX_XMLConfig*>(object);
}

/// @return the options of the element; NULL without options, and after a report for NULL.
QEL_KX_Options* options_of(QEL_KX_XMLConfig* config);

/// Makes the object of an element. @return NULL after a report
DDS_XMLObject* create_object(DDS_XMLExtensionClass* extension_class, DDS_XMLObject* parent,
                             DDS_XMLContext* context);

/// Frees an object with its options; NULL is ignored.
void delete_object(DDS_XMLObject* object);

}  // namespace orvane::xml

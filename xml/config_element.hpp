/// @file config_element.hpp
/// @brief The children of an `orvane` element.
#pragma once

#include <span>

#include "orvane/xml.h"

namespace orvane::xml {

/// Where a child may stand.
enum class Place { InOrvane, InThread };

/// A child of which the text has arrived.
struct EndedElement {
    QEL_KX_XMLConfig& config;
    const char* tag_name;
    const char* text;
    DDS_XMLContext* context;
    DDS_XMLParseErrorFunction parse_error_function;
};

struct ChildElement {
    QEL_KX_XMLConfigElement element;
    const char* tag_name;
    Place place;
    /// Stores the value. @return which element is open then.
    QEL_KX_XMLConfigElement (*store)(const EndedElement& ended);
};

/// All children, in the order of their numbers from 1 on.
[[nodiscard]] std::span<const ChildElement> child_elements() noexcept;

}  // namespace orvane::xml

/// @file option_table.hpp
/// @brief The options of the logger and their XML elements, as a table.
///
/// The rows drive the reading of an `orvane` element, the writing of one, its schema in
/// docs/orvane.xsd and the tables in docs/configuration.md. Their words are in
/// vocabulary/option_descriptions.hpp.
#pragma once

#include <span>

#include "orvane/xml.h"
#include "xml/parse_report.hpp"
#include "xml/vocabulary/option_descriptions.hpp"

namespace orvane::xml {

/// Whether an element counts as open after its text was read.
enum class ElementState { Closed, Open };

/// An option, which is a field of `Record`.
template <typename Record>
struct Option {
    OptionDescription description;
    /// Stores the value of a text. A refused text has been reported.
    ElementState (*read)(Record* record, const ElementText& element);
    /// Writes the element, with its indentation.
    void (*write)(const char* name, const Record& record, QELXMLSaveContext* context);
};

/// The fields of the options record, in the order in which their elements are written.
std::span<const Option<QEL_KX_Options>> options() noexcept;

/// The fields of @ref QEL_KX_Options::thread, in the order in which their elements are written.
std::span<const Option<DDS_ThreadSettings_t>> thread_settings() noexcept;

}  // namespace orvane::xml

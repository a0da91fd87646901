/// @file option_table.hpp
/// @brief The options of the logger and their XML elements, as a table.
///
/// The rows drive the reading of an `orvane` element, the writing of one, its schema in
/// docs/orvane.xsd and the tables in docs/configuration.md.
#pragma once

#include <span>

#include "orvane/xml.h"
#include "xml/parse_report.hpp"

namespace orvane::xml {

/// How the value of an option is written in a file. The schema has a type for each.
enum class ValueType {
    NoElement,  ///< only the application sets the option
    TruthValue,
    FilterLevel,
    PositiveNumber,
    Mask,
    Priority,
    StackSize,
    CpuList,  ///< numbers, each in an element called `element`
    CpuRotation,
    ThreadSettings,  ///< the children of an element of its own
};

/// Whether an element counts as open after its text was read.
enum class ElementState { Closed, Open };

/// What the documentation says about an option.
struct OptionDescription {
    /// Of the element, or of the field when the option has no element.
    const char* name = nullptr;
    QEL_KX_XMLConfigElement number = QEL_KX_XML_ELEMENT_NONE;
    /// A text of the element that is not the default; of an element only.
    const char* example = nullptr;
    /// The text that means the default, NULL without one.
    const char* by_default = nullptr;
    /// In Markdown.
    const char* range = "";
    const char* effect = "";
};

/// An option, which is a field of `Record`.
template <typename Record>
struct Option {
    OptionDescription description;
    ValueType type;
    /// Stores the value of a text. A refused text has been reported.
    ElementState (*read)(Record* record, const ElementText& element);
    /// Writes the element, with its indentation.
    void (*write)(const char* name, const Record& record, QELXMLSaveContext* context);

    constexpr bool has_element() const noexcept { return type != ValueType::NoElement; }
    constexpr bool is_list() const noexcept { return type == ValueType::CpuList; }
};

/// The fields of the options record, in the order in which their elements are written.
std::span<const Option<QEL_KX_Options>> options() noexcept;

/// The fields of @ref QEL_KX_Options::thread, in the order in which their elements are written.
std::span<const Option<DDS_ThreadSettings_t>> thread_settings() noexcept;

}  // namespace orvane::xml

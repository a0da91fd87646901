/// @file values.hpp
/// @brief The types of values in the option table: how a field is read and written.
#pragma once

#include "core/options.hpp"
#include "core/shared_field.hpp"
#include "xml/filter_level.hpp"
#include "xml/option_table.hpp"
#include "xml/writer.hpp"

namespace orvane::xml {

enum class Layout {
    Indented,
    AtMargin,  ///< files that are compared by text rely on it
};

template <Layout Begin = Layout::Indented>
struct TruthValue {
    /// A refused text means false.
    template <auto Field>
    static ElementState read(QEL_KX_Options* options, const ElementText& element) {
        DDS_Boolean flag = DDS_BOOLEAN_FALSE;
        DDS_XMLHelper_str_to_boolean(&flag, element.text, element.context);
        core::store(options->*Field, flag != DDS_BOOLEAN_FALSE ? 1 : 0);
        return ElementState::Closed;
    }

    template <auto Field>
    static void write(const char* name, const QEL_KX_Options& options, QELXMLSaveContext* context) {
        if (Begin == Layout::Indented) {
            QELXMLSaveContext_indent(context);
        }
        DDS_XMLHelper_save_freeform(context, "<%s>%s</%s>\n", name,
                                    core::load(options.*Field) != 0 ? "true" : "false", name);
    }
};

struct FilterLevel {
    /// After a refusal the element stays open.
    template <auto Field>
    static ElementState read(QEL_KX_Options* options, const ElementText& element) {
        const DDS_UnsignedLong level = read_filter_level(element);
        if (level == QEL_KX_XML_INVALID_FILTER_LEVEL) {
            element.report_as("QEL_KX_XMLConfig_onEndElement")
                .refuse("invalid filter level string in XML configuration");
            return ElementState::Open;
        }
        // A refusal has been reported.
        static_cast<void>(core::set_filter_level(options, static_cast<DDS_Long>(level)));
        return ElementState::Closed;
    }

    template <auto Field>
    static void write(const char* name, const QEL_KX_Options& options, QELXMLSaveContext* context) {
        write_filter_level(name, filter_level_in_force(core::load(options.*Field)), context);
    }
};

/// @tparam Convert stores the number of a text, or nothing when it refuses the text
/// @tparam Set the option's setter; it gets 0 for a refused text and refuses that too
template <auto Convert, auto Set>
struct PositiveNumber {
    template <auto Field>
    static ElementState read(QEL_KX_Options* options, const ElementText& element) {
        DDS_Long number = 0;
        Convert(number, element);
        // A refusal has been reported.
        static_cast<void>(Set(options, number));
        return ElementState::Closed;
    }

    template <auto Field>
    static void write(const char* name, const QEL_KX_Options& options, QELXMLSaveContext* context) {
        QELXMLSaveContext_indent(context);
        DDS_XMLHelper_save_freeform(context, "<%s>%d</%s>\n", name, core::load(options.*Field),
                                    name);
    }
};

/// The element that holds the thread settings as its children.
struct ThreadSettings {
    template <auto Field>
    static ElementState read(QEL_KX_Options* /*options*/, const ElementText& /*element*/) {
        return ElementState::Closed;
    }

    template <auto Field>
    static void write(const char* name, const QEL_KX_Options& options, QELXMLSaveContext* context) {
        save_thread_settings(name, options.*Field, context);
    }
};

/// One field of the thread settings, with its conversions.
template <auto Read, auto Write>
struct Setting {
    template <auto Field>
    static ElementState read(DDS_ThreadSettings_t* settings, const ElementText& element) {
        Read(settings->*Field, element);
        return ElementState::Closed;
    }

    template <auto Field>
    static void write(const char* name, const DDS_ThreadSettings_t& settings,
                      QELXMLSaveContext* context) {
        Write(name, settings.*Field, context);
    }
};

}  // namespace orvane::xml

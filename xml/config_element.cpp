// Reads the children of an `orvane` element.

#include <cerrno>
#include <cstring>
#include <span>

#include "core/report.hpp"
#include "xml/config_object.hpp"
#include "xml/option_table.hpp"

namespace orvane::xml {
namespace {

constexpr const char* end_context = "QEL_KX_XMLConfig_onEndElement";

template <typename Record>
const Option<Record>* named(std::span<const Option<Record>> options, const char* tag_name) {
    for (const Option<Record>& option : options) {
        if (option.description.has_element() &&
            std::strcmp(option.description.name, tag_name) == 0) {
            return &option;
        }
    }
    return nullptr;
}

/// The option of the element that is open.
template <typename Record>
const Option<Record>* open_option(std::span<const Option<Record>> options,
                                  const QEL_KX_XMLConfig& config) {
    for (const Option<Record>& option : options) {
        if (option.description.has_element() &&
            option.description.number == config.currentElement) {
            return &option;
        }
    }
    return nullptr;
}

void start_element(QEL_KX_XMLConfig& config, const char* tag_name) {
    // Conversions test errno. It must not hold an error from before this element.
    errno = 0;
    if (const auto* option = named(options(), tag_name)) {
        config.currentElement = option->description.number;
    } else if (config.currentElement == QEL_KX_XML_ELEMENT_THREAD) {
        if (const auto* setting = named(thread_settings(), tag_name)) {
            config.currentElement = setting->description.number;
        }
    }
}

/// Reads the text of an element into the option that is open, unless another element has ended.
/// @param parent the element that is open afterwards
template <typename Record>
void end_option(const Option<Record>& option, Record* record, QEL_KX_XMLConfig& config,
                const char* tag_name, const ElementText& element, QEL_KX_XMLConfigElement parent) {
    if (option.description.is_list() && std::strcmp(tag_name, "element") == 0) {
        option.read(record, element);
        return;
    }
    if (std::strcmp(tag_name, option.description.name) != 0) {
        return;
    }
    if (option.description.is_list() || option.read(record, element) == ElementState::Closed) {
        config.currentElement = parent;
    }
}

void end_element(QEL_KX_XMLConfig& config, const char* tag_name, const char* text,
                 DDS_XMLContext* context) {
    if (config.listener == nullptr) {
        core::report(end_context, "invalid extension listener");
        return;
    }
    const ElementText element{text, context, config.listener->parseErrorFunction};
    if (element.parse_error_function == nullptr) {
        core::report(end_context, "invalid log parse error function pointer");
        return;
    }
    if (const auto* option = open_option(options(), config)) {
        end_option(*option, config.options, config, tag_name, element, QEL_KX_XML_ELEMENT_NONE);
    } else if (const auto* setting = open_option(thread_settings(), config)) {
        end_option(*setting, &config.options->thread, config, tag_name, element,
                   QEL_KX_XML_ELEMENT_THREAD);
    }
}

}  // namespace
}  // namespace orvane::xml

namespace xml = orvane::xml;

void QEL_KX_XMLConfig_onStartElement(DDS_XMLObject* object, const char* tagName,
                                     const char* const* /*attributes*/,
                                     DDS_XMLContext* /*context*/) {
    xml::start_element(*xml::config_of(object), tagName);
}

void QEL_KX_XMLConfig_onEndElement(DDS_XMLObject* object, const char* tagName,
                                   const char* elementText, DDS_XMLContext* context) {
    xml::end_element(*xml::config_of(object), tagName, elementText, context);
}

#include "xml/config_element.hpp"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <iterator>

#include "core/report.hpp"
#include "core/shared_field.hpp"
#include "pexa/osapi.h"
#include "xml/parse_report.hpp"

namespace orvane::xml {
namespace {

using core::report;

constexpr const char* element_name = "orvane";

// ---- children

constexpr const char* end_context = "QEL_KX_XMLConfig_onEndElement";

QEL_KX_XMLConfigElement store_filter_level(const EndedElement& ended) {
    const DDS_UnsignedLong level = QEL_KX_XMLConfig_getFilterLevelFromString(
        ended.text, ended.context, ended.parse_error_function);
    if (level == QEL_KX_XML_INVALID_FILTER_LEVEL) {
        ParseReport(end_context, ended.context, ended.parse_error_function)
            .refuse("invalid filter level string in XML configuration");
        return QEL_KX_XML_ELEMENT_FILTER_LEVEL;
    }
    QEL_KX_Options_setFilterLevel(ended.config.options, static_cast<DDS_Long>(level));
    return QEL_KX_XML_ELEMENT_NONE;
}

QEL_KX_XMLConfigElement store_queue_size(const EndedElement& ended) {
    DDS_Long size = 0;
    QEL_KX_XMLConfig_getQueueSize(&size, ended.text, ended.context, ended.parse_error_function);
    QEL_KX_Options_setQueueSize(ended.config.options, size);
    return QEL_KX_XML_ELEMENT_NONE;
}

template <QELBool QEL_KX_Options::*Field>
QEL_KX_XMLConfigElement store_flag(const EndedElement& ended) {
    DDS_Boolean flag = DDS_BOOLEAN_FALSE;
    DDS_XMLHelper_str_to_boolean(&flag, ended.text, ended.context);
    core::store(ended.config.options->*Field, flag != DDS_BOOLEAN_FALSE ? 1 : 0);
    return QEL_KX_XML_ELEMENT_NONE;
}

QEL_KX_XMLConfigElement end_thread(const EndedElement& /*ended*/) {
    return QEL_KX_XML_ELEMENT_NONE;
}

/// A child of `thread` that is one field of the settings.
template <auto Field, auto Convert>
QEL_KX_XMLConfigElement store_setting(const EndedElement& ended) {
    DDS_ThreadSettings_t* settings = QEL_KX_Options_getThreadSettings(ended.config.options);
    Convert(&(settings->*Field), ended.text, ended.context, ended.parse_error_function);
    return QEL_KX_XML_ELEMENT_THREAD;
}

QEL_KX_XMLConfigElement store_cpu(const EndedElement& ended) {
    if (std::strcmp(ended.tag_name, "element") != 0) {
        return QEL_KX_XML_ELEMENT_THREAD;
    }
    store_setting<&DDS_ThreadSettings_t::cpu_list, QEL_KX_XMLConfig_addElementToThreadCpuList>(
        ended);
    return QEL_KX_XML_ELEMENT_CPU_LIST;
}

constexpr ChildElement children[] = {
    {QEL_KX_XML_ELEMENT_FILTER_LEVEL, "filter_level", Place::InOrvane, store_filter_level},
    {QEL_KX_XML_ELEMENT_ENABLED, "enabled", Place::InOrvane, store_flag<&QEL_KX_Options::enabled>},
    {QEL_KX_XML_ELEMENT_THREAD, "thread", Place::InOrvane, end_thread},
    {QEL_KX_XML_ELEMENT_MASK, "mask", Place::InThread,
     store_setting<&DDS_ThreadSettings_t::mask, QEL_KX_XMLConfig_getThreadSettingsKindMask>},
    {QEL_KX_XML_ELEMENT_PRIORITY, "priority", Place::InThread,
     store_setting<&DDS_ThreadSettings_t::priority, QEL_KX_XMLConfig_getThreadPriority>},
    {QEL_KX_XML_ELEMENT_STACK_SIZE, "stack_size", Place::InThread,
     store_setting<&DDS_ThreadSettings_t::stack_size, QEL_KX_XMLConfig_getThreadStackSize>},
    {QEL_KX_XML_ELEMENT_CPU_LIST, "cpu_list", Place::InThread, store_cpu},
    {QEL_KX_XML_ELEMENT_CPU_ROTATION, "cpu_rotation", Place::InThread,
     store_setting<&DDS_ThreadSettings_t::cpu_rotation, QEL_KX_XMLConfig_getThreadCpuRotation>},
    {QEL_KX_XML_ELEMENT_QUEUE_SIZE, "queue_size", Place::InOrvane, store_queue_size},
    {QEL_KX_XML_ELEMENT_ECHO_TO_STDOUT, "echo_to_stdout", Place::InOrvane,
     store_flag<&QEL_KX_Options::echo_to_stdout>},
    {QEL_KX_XML_ELEMENT_LOG_INFRASTRUCTURE_MESSAGES, "log_infrastructure_messages", Place::InOrvane,
     store_flag<&QEL_KX_Options::log_infrastructure_messages>},
};

const ChildElement* open_child(const QEL_KX_XMLConfig& config) noexcept {
    const DDS_UnsignedLong number = config.currentElement;
    return number >= 1 && number <= std::size(children) ? &children[number - 1] : nullptr;
}

void start_element(QEL_KX_XMLConfig& config, const char* tag_name) {
    // What a conversion finds in errno shall be about this element, not about anything before.
    errno = 0;
    const bool in_thread = config.currentElement == QEL_KX_XML_ELEMENT_THREAD;
    for (const ChildElement& child : children) {
        if ((child.place == Place::InOrvane || in_thread) &&
            std::strcmp(child.tag_name, tag_name) == 0) {
            config.currentElement = child.element;
            return;
        }
    }
}

/// Whether the end of @p tag_name is about the child that is open.
bool ends(const ChildElement& child, const char* tag_name) noexcept {
    return std::strcmp(child.tag_name, tag_name) == 0 ||
           (child.element == QEL_KX_XML_ELEMENT_CPU_LIST && std::strcmp("element", tag_name) == 0);
}

void end_element(QEL_KX_XMLConfig& config, const char* tag_name, const char* text,
                 DDS_XMLContext* context) {
    if (config.listener == nullptr) {
        report(end_context, "invalid extension listener");
        return;
    }
    const DDS_XMLParseErrorFunction parse_error = config.listener->parseErrorFunction;
    if (parse_error == nullptr) {
        report(end_context, "invalid log parse error function pointer");
        return;
    }
    const ChildElement* child = open_child(config);
    if (child != nullptr && ends(*child, tag_name)) {
        config.currentElement = child->store({config, tag_name, text, context, parse_error});
    }
}

// ---- objects

// Both ways between the platform's object and the library's record are a cast.
static_assert(offsetof(QEL_KX_XMLConfig, object) == 0);

QEL_KX_XMLConfig* config_of(DDS_XMLObject* object) noexcept {
    return reinterpret_cast<QEL_KX_XMLConfig*>(object);
}

QEL_KX_XMLConfig* allocate() {
    QEL_KX_XMLConfig* config = nullptr;
    QELOsapiHeap_allocateStructure(&config, QEL_KX_XMLConfig);
    if (config == nullptr) {
        report("QEL_KX_XMLConfig_create", "could not allocate XML options object");
        return nullptr;
    }
    std::memset(config, 0, sizeof *config);
    return config;
}

void finalize(QEL_KX_XMLConfig* config) {
    if (config == nullptr) {
        return;
    }
    if (config->options != nullptr) {
        QEL_KX_Options_delete(config->options);
    }
    DDS_XMLObject_finalize(&config->object);
    QELOsapiHeap_freeStructure(config);
}

/// @return why the object cannot be used, or NULL.
const char* equip(QEL_KX_XMLConfig& config, DDS_XMLExtensionClass* extension_class) {
    config.listener =
        static_cast<XMLConfigListener*>(DDS_XMLExtensionClass_get_user_data(extension_class));
    if (config.listener == nullptr) {
        return "could not get extension listener";
    }
    if (config.listener->parseErrorFunction == nullptr) {
        return "invalid parsing error log function";
    }
    config.options = QEL_KX_Options_createDefault();
    if (config.options == nullptr) {
        return "XML object creation failed";
    }
    config.options->enabled = 0;
    return nullptr;
}

DDS_XMLObject* create(DDS_XMLExtensionClass* extension_class, DDS_XMLObject* parent,
                      DDS_XMLContext* context) {
    constexpr const char* own_name = "QEL_KX_XMLConfig_new";
    QEL_KX_XMLConfig* config = QEL_KX_XMLConfig_create();
    if (config == nullptr) {
        report(own_name, "XML object creation failed");
        return nullptr;
    }
    if (const char* failure = equip(*config, extension_class); failure != nullptr) {
        report(own_name, failure);
        finalize(config);
        return nullptr;
    }
    if (DDS_XMLObject_initialize(&config->object, extension_class, parent, element_name, 0) == 0) {
        ParseReport(own_name, context, config->listener->parseErrorFunction)
            .refuse("XML object initialization failed");
        finalize(config);
        return nullptr;
    }
    return &config->object;
}

QEL_KX_Options* options_of(QEL_KX_XMLConfig* config) {
    if (config == nullptr) {
        report("QEL_KX_XMLConfig_getKXOptions", "invalid XML configuration object");
        return nullptr;
    }
    return config->options;
}

bool is_orvane(const DDS_XMLObject* node) noexcept {
    const char* tag_name = DDS_XMLObject_get_tag_name(node);
    return tag_name != nullptr && std::strcmp(tag_name, element_name) == 0;
}

/// Goes as deep as the tree does, but not along its width.
DDS_XMLObject* find(DDS_XMLObject* node) {
    for (; node != nullptr; node = DDS_XMLObject_get_next_sibling(node)) {
        if (is_orvane(node)) {
            return node;
        }
        if (DDS_XMLObject* inside = find(DDS_XMLObject_get_first_child(node)); inside != nullptr) {
            return inside;
        }
    }
    return nullptr;
}

}  // namespace

std::span<const ChildElement> child_elements() noexcept {
    return children;
}

}  // namespace orvane::xml

namespace xml = orvane::xml;

QEL_KX_XMLConfig* QEL_KX_XMLConfig_create(void) {
    return xml::allocate();
}

DDS_XMLObject* QEL_KX_XMLConfig_new(DDS_XMLExtensionClass* extensionClass,
                                    DDS_XMLObject* parentObject, const char* const* /*attributes*/,
                                    DDS_XMLContext* context) {
    return xml::create(extensionClass, parentObject, context);
}

void QEL_KX_XMLConfig_delete(DDS_XMLObject* object) {
    QEL_KX_XMLConfig_finalize(object);
}

void QEL_KX_XMLConfig_finalize(DDS_XMLObject* object) {
    xml::finalize(xml::config_of(object));
}

void QEL_KX_XMLConfig_onStartElement(DDS_XMLObject* object, const char* tagName,
                                     const char* const* /*attributes*/,
                                     DDS_XMLContext* /*context*/) {
    xml::start_element(*xml::config_of(object), tagName);
}

void QEL_KX_XMLConfig_onEndElement(DDS_XMLObject* object, const char* tagName,
                                   const char* elementText, DDS_XMLContext* context) {
    xml::end_element(*xml::config_of(object), tagName, elementText, context);
}

QEL_KX_Options* QEL_KX_XMLConfig_getKXOptions(QEL_KX_XMLConfig* object) {
    return xml::options_of(object);
}

QEL_KX_XMLConfig* QEL_KX_XMLConfig_getXMLConfigFromXMLRoot(DDS_XMLObject* root) {
    return xml::config_of(QEL_KX_XMLConfig_getKXXMLObjectFromRoot(root));
}

DDS_XMLObject* QEL_KX_XMLConfig_getKXXMLObjectFromRoot(DDS_XMLObject* node) {
    return xml::find(node);
}

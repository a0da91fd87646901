#include "core/report.hpp"
#include "orvane/xml.h"
#include "pexa/osapi.h"
#include "xml/config_object.hpp"

namespace orvane::xml {
namespace {

DDS_XMLExtensionClass* refuse_class(const char* reason) {
    core::report("QEL_KX_XMLConfig_createXMLExtensionClass", reason);
    return nullptr;
}

DDS_XMLExtensionClass* create(DDS_XMLParseErrorFunction parse_error_function) {
    if (parse_error_function == nullptr) {
        return refuse_class("invalid log function");
    }
    XMLConfigListener* listener = nullptr;
    QELOsapiHeap_allocateStructure(&listener, XMLConfigListener);
    if (listener == nullptr) {
        return refuse_class("could not allocate extension class listener");
    }
    listener->parseErrorFunction = parse_error_function;
    DDS_XMLExtensionClass* made = DDS_XMLExtensionClass_new(
        element_name, listener, nullptr, nullptr, QEL_KX_XMLConfig_onStartElement,
        QEL_KX_XMLConfig_onEndElement, QEL_KX_XMLConfig_new, QEL_KX_XMLConfig_delete,
        QEL_KX_XMLConfig_save);
    if (made == nullptr) {
        QELOsapiHeap_freeStructure(listener);
        return refuse_class("creation of XML extension class failed");
    }
    return made;
}

void destroy(DDS_XMLExtensionClass* extension_class) {
    QELOsapiHeap_freeStructure(DDS_XMLExtensionClass_get_user_data(extension_class));
    DDS_XMLExtensionClass_delete(extension_class);
}

}  // namespace
}  // namespace orvane::xml

namespace xml = orvane::xml;

DDS_XMLExtensionClass* QEL_KX_XMLConfig_createXMLExtensionClass(
    DDS_XMLParseErrorFunction parseErrorFunction) {
    return xml::create(parseErrorFunction);
}

void QEL_KX_XMLConfig_destroyXMLExtensionClass(DDS_XMLExtensionClass* extensionClass) {
    xml::destroy(extensionClass);
}

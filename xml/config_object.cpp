#include "xml/config_object.hpp"

#include <cstring>

#include "core/options.hpp"
#include "core/report.hpp"
#include "pexa/osapi.h"
#include "platform/internal/status.hpp"
#include "xml/parse_report.hpp"

namespace orvane::xml {
namespace {

using core::report;
using pexa::Status;

constexpr const char* new_context = "QEL_KX_XMLConfig_new";

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

Status refuse_object(const char* reason) {
    report(new_context, reason);
    return Status::error;
}

/// Gives a new object its listener and its options. A failure has been reported.
Status equip(QEL_KX_XMLConfig& config, DDS_XMLExtensionClass* extension_class) {
    config.listener =
        static_cast<XMLConfigListener*>(DDS_XMLExtensionClass_get_user_data(extension_class));
    if (config.listener == nullptr) {
        return refuse_object("could not get extension listener");
    }
    if (config.listener->parseErrorFunction == nullptr) {
        return refuse_object("invalid parsing error log function");
    }
    config.options = core::create_default_options();
    if (config.options == nullptr) {
        return refuse_object("XML object creation failed");
    }
    config.options->enabled = 0;
    return Status::ok;
}

bool is_orvane(const DDS_XMLObject* node) noexcept {
    const char* tag_name = DDS_XMLObject_get_tag_name(node);
    return tag_name != nullptr && std::strcmp(tag_name, element_name) == 0;
}

/// The recursion goes as deep as the tree does, but not along its width.
DDS_XMLObject* find_orvane(DDS_XMLObject* node) {
    for (; node != nullptr; node = DDS_XMLObject_get_next_sibling(node)) {
        if (is_orvane(node)) {
            return node;
        }
        DDS_XMLObject* inside = find_orvane(DDS_XMLObject_get_first_child(node));
        if (inside != nullptr) {
            return inside;
        }
    }
    return nullptr;
}

}  // namespace

QEL_KX_Options* options_of(QEL_KX_XMLConfig* config) {
    if (config == nullptr) {
        report("QEL_KX_XMLConfig_getKXOptions", "invalid XML configuration object");
        return nullptr;
    }
    return config->options;
}

DDS_XMLObject* create_object(DDS_XMLExtensionClass* extension_class, DDS_XMLObject* parent,
                             DDS_XMLContext* context) {
    QEL_KX_XMLConfig* config = allocate();
    if (config == nullptr) {
        report(new_context, "XML object creation failed");
        return nullptr;
    }
    if (equip(*config, extension_class) != Status::ok) {
        delete_object(&config->object);
        return nullptr;
    }
    if (DDS_XMLObject_initialize(&config->object, extension_class, parent, element_name, 0) == 0) {
        ParseReport(new_context, context, config->listener->parseErrorFunction)
            .refuse("XML object initialization failed");
        delete_object(&config->object);
        return nullptr;
    }
    return &config->object;
}

void delete_object(DDS_XMLObject* object) {
    QEL_KX_XMLConfig* config = config_of(object);
    if (config == nullptr) {
        return;
    }
    if (config->options != nullptr) {
        core::delete_options(config->options);
    }
    DDS_XMLObject_finalize(object);
    QELOsapiHeap_freeStructure(config);
}

}  // namespace orvane::xml

namespace xml = orvane::xml;

QEL_KX_XMLConfig* QEL_KX_XMLConfig_create(void) {
    return xml::allocate();
}

DDS_XMLObject* QEL_KX_XMLConfig_new(DDS_XMLExtensionClass* extensionClass,
                                    DDS_XMLObject* parentObject, const char* const* /*attributes*/,
                                    DDS_XMLContext* context) {
    return xml::create_object(extensionClass, parentObject, context);
}

void QEL_KX_XMLConfig_delete(DDS_XMLObject* object) {
    xml::delete_object(object);
}

void QEL_KX_XMLConfig_finalize(DDS_XMLObject* object) {
    xml::delete_object(object);
}

QEL_KX_Options* QEL_KX_XMLConfig_getKXOptions(QEL_KX_XMLConfig* object) {
    return xml::options_of(object);
}

QEL_KX_XMLConfig* QEL_KX_XMLConfig_getXMLConfigFromXMLRoot(DDS_XMLObject* root) {
    return xml::config_of(xml::find_orvane(root));
}

DDS_XMLObject* QEL_KX_XMLConfig_getKXXMLObjectFromRoot(DDS_XMLObject* node) {
    return xml::find_orvane(node);
}

#include "xml/writer.hpp"

#include "xml/config_object.hpp"
#include "xml/option_table.hpp"

namespace orvane::xml {
namespace {

void save(QEL_KX_XMLConfig* config, QELXMLSaveContext* context) {
    QELXMLSaveContext_indent(context);
    DDS_XMLHelper_save_freeform(context, "<orvane>\n");
    ++context->indentDepth;
    if (config == nullptr || config->options == nullptr) {
        QELXMLSaveContext_indent(context);
        options_of(config);
        context->error = 1;
        return;
    }
    for (const Option<QEL_KX_Options>& option : options()) {
        if (!option.description.has_element()) {
            continue;
        }
        if (context->error != 0) {
            return;
        }
        option.write(option.description.name, *config->options, context);
    }
    --context->indentDepth;
    QELXMLSaveContext_indent(context);
    DDS_XMLHelper_save_freeform(context, "</orvane>\n");
}

bool are_default(const DDS_ThreadSettings_t& settings) {
    DDS_ThreadSettings_t defaults{};
    DDS_ThreadSettings_t_initialize(&defaults);
    const bool equal = DDS_ThreadSettings_is_equal(&settings, &defaults) != 0;
    DDS_ThreadSettings_t_finalize(&defaults);
    return equal;
}

}  // namespace

void save_thread_settings(const char* tag_name, const DDS_ThreadSettings_t& settings,
                          QELXMLSaveContext* context) {
    if (are_default(settings)) {
        return;
    }
    DDS_XMLHelper_save_tag(tag_name, DDS_XML_TAG_OPEN, context);
    for (const Option<DDS_ThreadSettings_t>& setting : thread_settings()) {
        setting.write(setting.description.name, settings, context);
        if (context->error != 0) {
            return;
        }
    }
    DDS_XMLHelper_save_tag(tag_name, DDS_XML_TAG_CLOSE, context);
}

}  // namespace orvane::xml

namespace xml = orvane::xml;

void QEL_KX_XMLConfig_save(DDS_XMLObject* object, QELXMLSaveContext* saveContext, void* /*extra*/) {
    xml::save(xml::config_of(object), saveContext);
}

void QEL_KX_XMLConfig_saveThreadSettings(const char* tagName,
                                         const DDS_ThreadSettings_t* threadSettings,
                                         QELXMLSaveContext* saveContext) {
    xml::save_thread_settings(tagName, *threadSettings, saveContext);
}

#include "core/shared_field.hpp"
#include "orvane/xml.h"
#include "pexa/osapi.h"
#include "platform/internal/number_of.hpp"
#include "xml/text_numbers.hpp"
#include "xml/thread_setting_names.hpp"

namespace orvane::xml {
namespace {

/// The running logger's level, which remote tools may have changed, or that of the options.
DDS_Long filter_level_in_force(const QEL_KX_Options& options) {
    DDS_Long level = QEL_KX_Options_getFilterLevel(&options);
    // The lock keeps the instance from ending meanwhile.
    if (QEL_KX_Orvane_isOrvaneRunning() != 0 && QELOsapi_global_lock() == 0) {
        if (const QEL_KX_Orvane* running = core::load(QEL_KX_Orvane_instance); running != nullptr) {
            level = core::load(running->filterLevel);
        }
        QELOsapi_global_unlock();
    }
    return level;
}

void save_filter_level(const QEL_KX_Options& options, QELXMLSaveContext* context) {
    const DDS_Long level = filter_level_in_force(options);
    if (const char* name = level_name(level); name != nullptr) {
        DDS_XMLHelper_save_freeform(context, "<filter_level>%s</filter_level>\n", name);
    } else {
        DDS_XMLHelper_save_freeform(context, "<filter_level>%u</filter_level>\n",
                                    static_cast<DDS_UnsignedLong>(level));
    }
}

void save_flag(const char* tag_name, const QELBool& flag, QELXMLSaveContext* context) {
    DDS_XMLHelper_save_freeform(context, "<%s>%s</%s>\n", tag_name,
                                core::load(flag) != 0 ? "true" : "false", tag_name);
}

void save(QEL_KX_XMLConfig* config, QELXMLSaveContext* context) {
    QELXMLSaveContext_indent(context);
    DDS_XMLHelper_save_freeform(context, "<orvane>\n");
    ++context->indentDepth;
    QELXMLSaveContext_indent(context);
    QEL_KX_Options* options = QEL_KX_XMLConfig_getKXOptions(config);
    if (options == nullptr) {
        context->error = 1;
        return;
    }
    save_filter_level(*options, context);
    QELXMLSaveContext_indent(context);
    save_flag("enabled", options->enabled, context);
    // These two begin at the margin: files that are compared by text rely on it.
    save_flag("echo_to_stdout", options->echo_to_stdout, context);
    save_flag("log_infrastructure_messages", options->log_infrastructure_messages, context);
    QEL_KX_XMLConfig_saveThreadSettings("thread", QEL_KX_Options_getThreadSettings(options),
                                        context);
    if (context->error != 0) {
        return;
    }
    QELXMLSaveContext_indent(context);
    DDS_XMLHelper_save_freeform(context, "<queue_size>%d</queue_size>\n",
                                QEL_KX_Options_getQueueSize(options));
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

void save_mask(DDS_UnsignedLong mask, QELXMLSaveContext* context) {
    QELXMLSaveContext_indent(context);
    DDS_XMLHelper_save_freeform(context, "<mask>");
    const char* separator = "";
    for (const auto& bit : mask_bits) {
        if ((mask & bit.value) != 0) {
            DDS_XMLHelper_save_freeform(context, "%s%s", separator, bit.name.to_be_written());
            separator = " | ";
        }
    }
    DDS_XMLHelper_save_freeform(context, "</mask>\n");
}

void save_priority(DDS_Long priority, QELXMLSaveContext* context) {
    if (priority != DDS_THREAD_PRIORITY_DEFAULT) {
        DDS_XMLHelper_save_long("priority", priority, context);
        return;
    }
    QELXMLSaveContext_indent(context);
    DDS_XMLHelper_save_freeform(context, "<priority>%s</priority>\n",
                                default_priority.to_be_written());
}

/// @return the name, or NULL.
const char* rotation_name(const DDS_ThreadSettings_t& settings) noexcept {
    const DDS_Long rotation = pexa::number_of(settings.cpu_rotation);
    for (const auto& kind : rotations) {
        if (kind.value == rotation) {
            return kind.name.to_be_written();
        }
    }
    return nullptr;
}

void save_thread_settings(const char* tag_name, const DDS_ThreadSettings_t& settings,
                          QELXMLSaveContext* context) {
    if (are_default(settings)) {
        return;
    }
    DDS_XMLHelper_save_tag(tag_name, DDS_XML_TAG_OPEN, context);
    save_mask(settings.mask, context);
    save_priority(settings.priority, context);
    if (settings.stack_size != DDS_THREAD_STACK_SIZE_DEFAULT) {
        DDS_XMLHelper_save_long("stack_size", settings.stack_size, context);
    }
    DDS_XMLHelper_save_long_seq("cpu_list", &settings.cpu_list, context);
    const char* rotation = rotation_name(settings);
    if (rotation == nullptr) {
        context->error = 1;
        return;
    }
    DDS_XMLHelper_save_string("cpu_rotation", rotation, context);
    DDS_XMLHelper_save_tag(tag_name, DDS_XML_TAG_CLOSE, context);
}

}  // namespace
}  // namespace orvane::xml

namespace xml = orvane::xml;

void QEL_KX_XMLConfig_save(DDS_XMLObject* object, QELXMLSaveContext* saveContext, void* /*extra*/) {
    xml::save(reinterpret_cast<QEL_KX_XMLConfig*>(object), saveContext);
}

void QEL_KX_XMLConfig_saveThreadSettings(const char* tagName,
                                         const DDS_ThreadSettings_t* threadSettings,
                                         QELXMLSaveContext* saveContext) {
    xml::save_thread_settings(tagName, *threadSettings, saveContext);
}

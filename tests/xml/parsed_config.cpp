#include "tests/xml/parsed_config.hpp"

#include <utility>

#include "pexa/string.h"

namespace orvane::test {
namespace {

std::string* current_reports = nullptr;

std::string numbers_of(const DDS_LongSeq& sequence) {
    std::string text;
    for (DDS_Long i = 0; i < sequence.length; ++i) {
        text += (i == 0 ? "" : ",") + std::to_string(sequence.contiguousBuffer[i]);
    }
    return text;
}

}  // namespace

ParsedConfig::ParsedConfig(const std::string& document)
    : class_(QEL_KX_XMLConfig_createXMLExtensionClass(note_parse_error)),
      parser_(DDS_XMLParser_new()) {
    std::string* outer = std::exchange(current_reports, &reports_);
    DDS_XMLParser_register_extension_class(parser_, class_);
    DDS_XMLParser_parse_string(parser_, "test", document.data(), document.size());
    current_reports = outer;
}

ParsedConfig::~ParsedConfig() {
    DDS_XMLParser_delete(parser_);
    QEL_KX_XMLConfig_destroyXMLExtensionClass(class_);
}

QEL_KX_Options* ParsedConfig::options() const {
    QEL_KX_XMLConfig* config =
        QEL_KX_XMLConfig_getXMLConfigFromXMLRoot(DDS_XMLParser_get_root(parser_));
    return config != nullptr ? QEL_KX_XMLConfig_getKXOptions(config) : nullptr;
}

std::string ParsedConfig::saved() const {
    char* text = DDS_XMLParser_save_string(parser_);
    std::string copy = text != nullptr ? text : "";
    DDS_String_free(text);
    return copy;
}

std::string as_xml(const std::string& path, const std::string& text) {
    const std::size_t slash = path.find('/');
    const std::string tag = path.substr(0, slash);
    const std::string inner =
        slash == std::string::npos ? text : as_xml(path.substr(slash + 1), text);
    return "<" + tag + ">" + inner + "</" + tag + ">";
}

std::string with_orvane(const std::string& children) {
    return "<dds>\n<orvane>\n" + children + "\n</orvane>\n</dds>";
}

void note_parse_error(const char* message, const char* function_name, DDS_Long line) {
    if (current_reports != nullptr) {
        *current_reports += std::to_string(line) + " " + function_name + ": " + message + "\n";
    }
}

std::string differences(const QEL_KX_Options& options) {
    const DDS_ThreadSettings_t& thread = options.thread;
    const struct {
        const char* name;
        std::string value;
        std::string by_default;
    } fields[] = {
        {"filter_level", std::to_string(options.filter_level), "600"},
        {"enabled", std::to_string(options.enabled), "0"},
        {"queue_size", std::to_string(options.queue_size), "128"},
        {"echo_to_stdout", std::to_string(options.echo_to_stdout), "0"},
        {"log_infrastructure_messages", std::to_string(options.log_infrastructure_messages), "1"},
        {"mask", std::to_string(thread.mask), "0"},
        {"priority", std::to_string(thread.priority), "-9999999"},
        {"stack_size", std::to_string(thread.stack_size), "-1"},
        {"cpu_list", numbers_of(thread.cpu_list), ""},
        {"cpu_rotation", std::to_string(thread.cpu_rotation), "0"},
    };
    std::string text;
    for (const auto& field : fields) {
        if (field.value != field.by_default) {
            text += (text.empty() ? "" : " ") + std::string(field.name) + "=" + field.value;
        }
    }
    return text;
}

}  // namespace orvane::test

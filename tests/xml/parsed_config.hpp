#pragma once

#include <string>
#include <utility>

#include "orvane/xml.h"
#include "pexa/string.h"
#include "tests/support/node.hpp"

namespace orvane::test {

inline std::string* current_reports = nullptr;

/// Appends the error to the reports of the parse that goes on; without a parse it is lost.
inline void note_parse_error(const char* message, const char* function_name, DDS_Long line) {
    if (current_reports != nullptr) {
        *current_reports += std::to_string(line) + " " + function_name + ": " + message + "\n";
    }
}

/// A document that has been parsed with the `orvane` class registered.
class ParsedConfig {
public:
    explicit ParsedConfig(const std::string& document) {
        std::string* outer = std::exchange(current_reports, &reports_);
        DDS_XMLParser_register_extension_class(parser_, class_);
        DDS_XMLParser_parse_string(parser_, "test", document.data(), document.size());
        current_reports = outer;
    }
    ~ParsedConfig() {
        DDS_XMLParser_delete(parser_);
        QEL_KX_XMLConfig_destroyXMLExtensionClass(class_);
    }

    /// A line "LINE FUNCTION: MESSAGE" for each parse error that the library has reported.
    const std::string& reports() const { return reports_; }
    bool has_failed() const { return DDS_XMLParser_has_failed(parser_) != 0; }
    /// Of the first `orvane` element; NULL without one.
    QEL_KX_Options* options() const {
        QEL_KX_XMLConfig* config =
            QEL_KX_XMLConfig_getXMLConfigFromXMLRoot(DDS_XMLParser_get_root(parser_));
        return config != nullptr ? QEL_KX_XMLConfig_getKXOptions(config) : nullptr;
    }
    /// The document as it is saved; empty when that fails.
    std::string saved() const {
        char* text = DDS_XMLParser_save_string(parser_);
        std::string copy = text != nullptr ? text : "";
        DDS_String_free(text);
        return copy;
    }

private:
    std::string reports_;
    DDS_XMLExtensionClass* class_ = QEL_KX_XMLConfig_createXMLExtensionClass(note_parse_error);
    DDS_XMLParser* parser_ = DDS_XMLParser_new();
};

/// The participant of a host. The logger ends before it.
struct Host : Node {
    ~Host() {
        QEL_KX_Orvane_finalizeInstance();
        QEL_KX_Orvane_setOptions(nullptr);
    }
};

/// Elements inside each other and a text: `a/b` and `c` give `<a><b>c</b></a>`.
inline std::string as_xml(const std::string& path, const std::string& text) {
    const std::size_t slash = path.find('/');
    const std::string tag = path.substr(0, slash);
    const std::string inner =
        slash == std::string::npos ? text : as_xml(path.substr(slash + 1), text);
    return "<" + tag + ">" + inner + "</" + tag + ">";
}
/// A document with these children of an `orvane` element, from line 3 on.
inline std::string with_orvane(const std::string& children) {
    return "<dds>\n<orvane>\n" + children + "\n</orvane>\n</dds>";
}

/// The options that differ from an `orvane` element without children: "filter_level=400 mask=3".
inline std::string differences(const QEL_KX_Options& options) {
    const DDS_ThreadSettings_t& thread = options.thread;
    const struct {
        const char* name;
        DDS_Long value;
        DDS_Long by_default;
    } fields[] = {
        {"filter_level", options.filter_level, QEL_KX_LEVEL_INFO},
        {"enabled", options.enabled, 0},
        {"queue_size", options.queue_size, 128},
        {"echo_to_stdout", options.echo_to_stdout, 0},
        {"log_infrastructure_messages", options.log_infrastructure_messages, 1},
        {"mask", static_cast<DDS_Long>(thread.mask), 0},
        {"priority", thread.priority, -9999999},
        {"stack_size", thread.stack_size, -1},
        {"cpu_rotation", thread.cpu_rotation, 0},
    };
    std::string text;
    for (const auto& field : fields) {
        if (field.value != field.by_default) {
            text += std::string(field.name) + "=" + std::to_string(field.value) + " ";
        }
    }
    for (DDS_Long i = 0; i < thread.cpu_list.length; ++i) {
        text += "cpu=" + std::to_string(thread.cpu_list.contiguousBuffer[i]) + " ";
    }
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

}  // namespace orvane::test

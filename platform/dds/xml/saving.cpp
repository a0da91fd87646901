#include "platform/dds/xml/saving.hpp"

#include <cstdio>
#include <string>

#include "pexa/osapi.h"
#include "platform/dds/interface/standard_sequences.hpp"

namespace pexa::dds::xml {
namespace {

void write_escaped(QELXMLSaveContext* context, std::string_view text) {
    while (!text.empty()) {
        const std::size_t plain = text.find_first_of("&<>\"\r\n\t");
        write(context, text.substr(0, plain));
        if (plain == std::string_view::npos) {
            return;
        }
        switch (text[plain]) {
            case '&':
                write(context, "&amp;");
                break;
            case '<':
                write(context, "&lt;");
                break;
            case '>':
                write(context, "&gt;");
                break;
            case '"':
                write(context, "&quot;");
                break;
            default:
                // A reader makes blanks of these where they stand in an attribute.
                write(context, "&#" + std::to_string(static_cast<int>(text[plain])) + ";");
        }
        text.remove_prefix(plain + 1);
    }
}

void save_plain(PlainObject& object, QELXMLSaveContext* context) {
    write_indentation(context);
    write(context, "<");
    write(context, object.tagName);
    for (const auto& [name, value] : object.attributes) {
        write(context, " " + name + "=\"");
        write_escaped(context, value);
        write(context, "\"");
    }
    if (object.text.empty() && object.firstChild == nullptr) {
        write(context, "/>\n");
        return;
    }
    write(context, ">");
    write_escaped(context, object.text);
    if (object.firstChild != nullptr) {
        write(context, "\n");
        ++context->indentDepth;
        for (DDS_XMLObject* child = object.firstChild; child != nullptr;
             child = child->nextSibling) {
            save_tree(*child, *context);
        }
        --context->indentDepth;
        write_indentation(context);
    }
    write(context, "</");
    write(context, object.tagName);
    write(context, ">\n");
}

}  // namespace

void save_tree(DDS_XMLObject& object, QELXMLSaveContext& context) {
    if (context.error != 0) {
        return;
    }
    if (object.extensionClass == nullptr) {
        save_plain(static_cast<PlainObject&>(object), &context);
    } else if (const auto save = object.extensionClass->save) {
        save(&object, &context, nullptr);
    }
}

void write(QELXMLSaveContext* context, std::string_view text) {
    if (context == nullptr || context->error != 0 || text.empty()) {
        return;
    }
    if (context->sink == nullptr ||
        context->sink(context->sinkData, text.data(), text.size()) == DDS_BOOLEAN_FALSE) {
        context->error = 1;
    }
}

void write_formatted(QELXMLSaveContext* context, const char* format, std::va_list arguments) {
    if (context == nullptr || context->error != 0) {
        return;
    }
    char buffer[512];
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(buffer, sizeof buffer, format, arguments);
    if (length >= 0 && static_cast<std::size_t>(length) < sizeof buffer) {
        write(context, buffer);
    } else {
        const std::size_t size = length >= 0 ? static_cast<std::size_t>(length) + 1 : 0;
        auto* text = static_cast<char*>(QELOsapiHeap_allocateBytes(size));
        if (text != nullptr && std::vsnprintf(text, size, format, again) == length) {
            write(context, text);
        } else {
            context->error = 1;
        }
        QELOsapiHeap_freeBytes(text);
    }
    va_end(again);
}

void write_indentation(QELXMLSaveContext* context) {
    const DDS_Long depth = context != nullptr ? context->indentDepth : 0;
    for (DDS_Long step = 0; step < depth && context->error == 0; ++step) {
        write(context, "    ");
    }
}

void save_tag(const char* tag_name, int kind, QELXMLSaveContext* context) {
    if (context == nullptr || context->error != 0) {
        return;
    }
    if (tag_name == nullptr || (kind != DDS_XML_TAG_OPEN && kind != DDS_XML_TAG_CLOSE)) {
        context->error = 1;
        return;
    }
    const bool opens = kind == DDS_XML_TAG_OPEN;
    context->indentDepth -= opens ? 0 : 1;
    write_indentation(context);
    write(context, opens ? "<" : "</");
    write(context, tag_name);
    write(context, ">\n");
    context->indentDepth += opens ? 1 : 0;
}

void save_text(const char* tag_name, std::string_view text, QELXMLSaveContext* context) {
    if (tag_name == nullptr) {
        if (context != nullptr) {
            context->error = 1;
        }
        return;
    }
    write_indentation(context);
    write(context, "<");
    write(context, tag_name);
    write(context, ">");
    write_escaped(context, text);
    write(context, "</");
    write(context, tag_name);
    write(context, ">\n");
}

void save_numbers(const char* tag_name, const DDS_LongSeq* numbers, QELXMLSaveContext* context) {
    const DDS_Long count = numbers != nullptr ? length_of(*numbers) : 0;
    if (count == 0 && tag_name != nullptr) {
        write_indentation(context);
        write(context, "<");
        write(context, tag_name);
        write(context, "/>\n");
        return;
    }
    save_tag(tag_name, DDS_XML_TAG_OPEN, context);
    for (DDS_Long i = 0; i < count; ++i) {
        save_text("element", std::to_string(element_of(*numbers, i)), context);
    }
    save_tag(tag_name, DDS_XML_TAG_CLOSE, context);
}

}  // namespace pexa::dds::xml

namespace xml = pexa::dds::xml;

void QELXMLSaveContext_indent(QELXMLSaveContext* context) {
    xml::write_indentation(context);
}

void DDS_XMLHelper_save_freeform(QELXMLSaveContext* context, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    xml::write_formatted(context, format, arguments);
    va_end(arguments);
}

void DDS_XMLHelper_save_tag(const char* tagName, int kind, QELXMLSaveContext* context) {
    xml::save_tag(tagName, kind, context);
}

void DDS_XMLHelper_save_long(const char* tagName, DDS_Long value, QELXMLSaveContext* context) {
    xml::save_text(tagName, std::to_string(value), context);
}

void DDS_XMLHelper_save_string(const char* tagName, const char* value, QELXMLSaveContext* context) {
    xml::save_text(tagName, value != nullptr ? value : "", context);
}

void DDS_XMLHelper_save_long_seq(const char* tagName, const DDS_LongSeq* value,
                                 QELXMLSaveContext* context) {
    xml::save_numbers(tagName, value, context);
}

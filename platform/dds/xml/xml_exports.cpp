#include <cstdarg>
#include <cstring>
#include <new>

#include "platform/dds/xml/parser.hpp"
#include "platform/dds/xml/saving.hpp"
#include "platform/dds/xml/truth_value.hpp"
#include "platform/dds/xml/white_space.hpp"

namespace dds = pexa::dds;
namespace xml = pexa::dds::xml;

namespace {

DDS_XMLExtensionClass* new_class(const char* tag_name, const void* reserved1, const void* reserved2,
                                 const DDS_XMLExtensionClass& content) {
    const dds::Operation operation("DDS_XMLExtensionClass_new");
    const char* refused = tag_name == nullptr                ? "tagName"
                          : reserved1 != nullptr             ? "reserved1"
                          : reserved2 != nullptr             ? "reserved2"
                          : content.new_object == nullptr    ? "newObject"
                          : content.delete_object == nullptr ? "deleteObject"
                                                             : nullptr;
    if (refused != nullptr) {
        static_cast<void>(operation.bad_parameter(refused));
        return nullptr;
    }
    try {
        auto made = std::make_unique<DDS_XMLExtensionClass>(content);
        made->tag_name = tag_name;
        return made.release();
    } catch (const std::bad_alloc&) {
        static_cast<void>(operation.out_of_memory());
        return nullptr;
    }
}

DDS_Boolean read_truth_value(DDS_Boolean* flag, const char* text, DDS_XMLContext* context) {
    const auto value = xml::to_truth_value(text != nullptr ? text : "");
    if (flag != nullptr && value) {
        *flag = *value ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
        return DDS_BOOLEAN_TRUE;
    }
    DDS_XMLParser_report_error(xml::truth_value_expected, "DDS_XMLHelper_str_to_boolean",
                               DDS_XMLContext_get_current_line_number(context));
    if (context != nullptr) {
        context->error = 1;
    }
    return DDS_BOOLEAN_FALSE;
}

char* trim(char* text) {
    if (text != nullptr) {
        const std::string_view rest = xml::trimmed(text);
        std::memmove(text, rest.data(), rest.size());
        text[rest.size()] = '\0';
    }
    return text;
}

}  // namespace

extern "C" {

DDS_Long DDS_XMLContext_get_current_line_number(const DDS_XMLContext* context) {
    return context != nullptr ? context->line : 0;
}

DDS_Boolean DDS_XMLObject_initialize(DDS_XMLObject* self, DDS_XMLExtensionClass* extensionClass,
                                     DDS_XMLObject* parent, const char* tagName,
                                     DDS_Long /*reserved*/) {
    return xml::initialize(self, extensionClass, parent, tagName);
}

void DDS_XMLObject_finalize(DDS_XMLObject* self) {
    xml::finalize(self);
}

const char* DDS_XMLObject_get_tag_name(const DDS_XMLObject* self) {
    return self != nullptr ? self->tagName : nullptr;
}

DDS_XMLObject* DDS_XMLObject_get_first_child(const DDS_XMLObject* self) {
    return self != nullptr ? self->firstChild : nullptr;
}

DDS_XMLObject* DDS_XMLObject_get_next_sibling(const DDS_XMLObject* self) {
    return self != nullptr ? self->nextSibling : nullptr;
}

DDS_XMLObject* DDS_XMLObject_get_parent(const DDS_XMLObject* self) {
    return self != nullptr ? self->parent : nullptr;
}

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

DDS_Boolean DDS_XMLHelper_str_to_boolean(DDS_Boolean* flag, const char* text,
                                         DDS_XMLContext* context) {
    return read_truth_value(flag, text, context);
}

char* QELXMLHelper_strTrim(char* text) {
    return trim(text);
}

DDS_XMLExtensionClass* DDS_XMLExtensionClass_new(const char* tagName, void* userData,
                                                 const void* reserved1, const void* reserved2,
                                                 DDS_XMLOnStartElementFunction onStartElement,
                                                 DDS_XMLOnEndElementFunction onEndElement,
                                                 DDS_XMLObjectNewFunction newObject,
                                                 DDS_XMLObjectDeleteFunction deleteObject,
                                                 DDS_XMLObjectSaveFunction save) {
    return new_class(tagName, reserved1, reserved2,
                     {{}, userData, onStartElement, onEndElement, newObject, deleteObject, save});
}

void DDS_XMLExtensionClass_delete(DDS_XMLExtensionClass* self) {
    delete self;
}

void* DDS_XMLExtensionClass_get_user_data(const DDS_XMLExtensionClass* self) {
    return self != nullptr ? self->user_data : nullptr;
}

DDS_XMLParser* DDS_XMLParser_new() {
    return dds::guarded(dds::Operation(__func__), [] { return new xml::Parser; });
}

void DDS_XMLParser_delete(DDS_XMLParser* self) {
    delete dds::object_of(self);
}

DDS_ReturnCode_t DDS_XMLParser_register_extension_class(DDS_XMLParser* self,
                                                        DDS_XMLExtensionClass* extensionClass) {
    return dds::call(__func__, self, &xml::Parser::register_class,
                     dds::required("extensionClass", extensionClass));
}

DDS_ReturnCode_t DDS_XMLParser_parse_file(DDS_XMLParser* self, const char* fileName) {
    return dds::call(__func__, self, &xml::Parser::parse_file, dds::required("fileName", fileName));
}

DDS_ReturnCode_t DDS_XMLParser_parse_string(DDS_XMLParser* self, const char* name, const char* text,
                                            size_t length) {
    return dds::call(__func__, self, &xml::Parser::parse_string, dds::required("name", name),
                     dds::required("text", text), length);
}

DDS_XMLObject* DDS_XMLParser_get_root(DDS_XMLParser* self) {
    return dds::call(__func__, self, &xml::Parser::root);
}

DDS_Boolean DDS_XMLParser_has_failed(DDS_XMLParser* self) {
    return dds::call(__func__, self, &xml::Parser::has_failed);
}

DDS_Long DDS_XMLParser_get_error_count(DDS_XMLParser* self) {
    return dds::call(__func__, self, &xml::Parser::fault_count);
}

DDS_ReturnCode_t DDS_XMLParser_get_error(DDS_XMLParser* self, DDS_Long index, DDS_XMLError* error) {
    return dds::call(__func__, self, &xml::Parser::get_fault, index, dds::required("error", error));
}

void DDS_XMLParser_report_error(const char* message, const char* functionName, DDS_Long line) {
    xml::add_current_fault(functionName, message, line);
}

DDS_ReturnCode_t DDS_XMLParser_save_file(DDS_XMLParser* self, const char* fileName) {
    return dds::call(__func__, self, &xml::Parser::save_file, dds::required("fileName", fileName));
}

char* DDS_XMLParser_save_string(DDS_XMLParser* self) {
    return dds::call(__func__, self, &xml::Parser::save_string);
}
}

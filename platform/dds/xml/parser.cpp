#include "platform/dds/xml/parser.hpp"

#include <new>
#include <system_error>
#include <utility>

#include "pexa/log.h"
#include "pexa/string.h"
#include "platform/dds/xml/document.hpp"
#include "platform/dds/xml/excerpt.hpp"
#include "platform/dds/xml/file.hpp"
#include "platform/dds/xml/saving.hpp"
#include "platform/dds/xml/tree_builder.hpp"

namespace pexa::dds::xml {
namespace {

void report(QELLogLevel level, const char* context, const std::string& line) {
    QELLog_printContextAndMsg(QEL_LOG_MODULE_DDS, DDS_SUBMODULE_MASK_QOS, level, context,
                              &QEL_LOG_ANY_s, line.c_str());
}

void report(QELLogLevel level, const char* context, const std::string& file_name,
            const std::vector<Fault>& faults) {
    for (const Fault& fault : faults) {
        report(level, context, text_of_fault(file_name, fault.line, fault.tag_name, fault.message));
    }
}

void keep(std::vector<Fault>& faults, DDS_Long line, std::string_view tag_name,
          std::string_view message) {
    if (faults.size() < DDS_XML_MAX_ERRORS) {
        faults.push_back({line, std::string(tag_name), std::string(message)});
    }
}

/// @return empty without memory: a fault counts all the same.
std::string with_found(const char* message, const char* found) noexcept {
    try {
        const std::string text = message != nullptr ? message : "";
        return found != nullptr ? "found \"" + excerpt(found) + "\", " + text : text;
    } catch (const std::bad_alloc&) {
        return {};
    }
}

}  // namespace

std::string text_of_fault(std::string_view file_name, DDS_Long line, std::string_view tag_name,
                          std::string_view message) {
    std::string text(file_name);
    text.append(":").append(std::to_string(line)).append(": ").append(tag_name);
    return text.append(tag_name.empty() ? "" : ": ").append(message);
}

DDS_XMLExtensionClass* Parser::find_class(std::string_view tag_name) const {
    for (DDS_XMLExtensionClass* known : classes_) {
        if (known->tag_name == tag_name) {
            return known;
        }
    }
    return nullptr;
}

Status Parser::register_class(const Operation& operation, DDS_XMLExtensionClass& extension_class) {
    if (used_) {
        return operation.precondition_not_met("no document has been parsed");
    }
    if (find_class(extension_class.tag_name) != nullptr) {
        return operation.precondition_not_met("no class of this tag name is registered");
    }
    classes_.push_back(&extension_class);
    return Status::ok;
}

Status Parser::result_of_parse(const Operation& operation) const {
    report_faults(operation);
    return root_ != nullptr || fault_count_ == 0 ? Status::ok : Status::error;
}

Status Parser::parse_file(const Operation& operation, const char* file_name) {
    if (used_) {
        return operation.precondition_not_met("no document has been parsed");
    }
    read_file(file_name);
    return result_of_parse(operation);
}

Status Parser::parse_string(const Operation& operation, const char* name, const char* text,
                            std::size_t length) {
    if (used_) {
        return operation.precondition_not_met("no document has been parsed");
    }
    read_text(name, {text, length});
    return result_of_parse(operation);
}

void Parser::read_file(const std::string& file_name) {
    const FileContent content = xml::read_file(file_name);
    if (content.error == 0) {
        read_text(file_name, content.text);
        return;
    }
    used_ = true;
    file_name_ = file_name;
    add_fault(0, "", "the file cannot be read: " + std::generic_category().message(content.error));
}

void Parser::read_text(const std::string& name, std::string_view text) {
    used_ = true;
    file_name_ = name;
    TreeBuilder builder(*this);
    if (const auto fault = read_document(text, builder)) {
        builder.add_fault(fault->message, fault->line);
    } else {
        root_ = builder.take_tree();
    }
}

Status Parser::get_fault(DDS_Long index, DDS_XMLError& error) const {
    if (index < 0 || static_cast<std::size_t>(index) >= faults_.size()) {
        return Status::no_data;
    }
    const Fault& fault = faults_[static_cast<std::size_t>(index)];
    error = {file_name_.c_str(), fault.line, fault.tag_name.c_str(), fault.message.c_str()};
    return Status::ok;
}

void Parser::add_fault(DDS_Long line, std::string_view tag_name, std::string_view message) {
    ++fault_count_;
    keep(faults_, line, tag_name, message);
}

void Parser::add_warning(DDS_Long line, std::string_view tag_name, std::string_view message) {
    keep(warnings_, line, tag_name, message);
}

void Parser::report_faults(const Operation& operation) const {
    report(QEL_LOG_LEVEL_WARNING, operation.name(), file_name_, warnings_);
    report(QEL_LOG_LEVEL_ERROR, operation.name(), file_name_, faults_);
    const auto kept = static_cast<DDS_Long>(faults_.size());
    if (fault_count_ > kept) {
        report(QEL_LOG_LEVEL_ERROR, operation.name(),
               file_name_ + ": " + std::to_string(fault_count_ - kept) + " more errors");
    }
}

std::optional<std::string> Parser::saved() const {
    // Called through the classes' save functions, which no exception may pass.
    const auto append = [](void* data, const char* part, std::size_t length) noexcept {
        try {
            static_cast<std::string*>(data)->append(part, length);
        } catch (const std::bad_alloc&) {
            return DDS_BOOLEAN_FALSE;
        }
        return DDS_BOOLEAN_TRUE;
    };
    std::string text;
    QELXMLSaveContext context{0, 0, append, &text};
    save_tree(*root_, context);
    return context.error == 0 ? std::optional(std::move(text)) : std::nullopt;
}

Status Parser::save_file(const Operation& operation, const char* file_name) const {
    if (root_ == nullptr) {
        return operation.precondition_not_met("a document has been parsed");
    }
    const auto text = saved();
    if (!text || replace_file(file_name, *text) != Status::ok) {
        return operation.failed("saving the tree", Status::error);
    }
    return Status::ok;
}

Result<char*> Parser::save_string(const Operation& operation) const {
    if (root_ == nullptr) {
        return operation.precondition_not_met("a document has been parsed");
    }
    const auto text = saved();
    if (!text) {
        return operation.failed("saving the tree", Status::error);
    }
    char* copy = DDS_String_dup(text->c_str());
    if (copy == nullptr) {
        return operation.out_of_memory();
    }
    return copy;
}

void add_current_fault(const char* context, const char* message, DDS_Long line,
                       const char* found) noexcept {
    const std::string text = with_found(message, found);
    try {
        if (TreeBuilder* builder = TreeBuilder::current()) {
            builder->add_fault(text, line);
        } else {
            report(QEL_LOG_LEVEL_ERROR, context != nullptr ? context : "",
                   "line " + std::to_string(line) + ": " + text);
        }
    } catch (const std::bad_alloc&) {
        // The parser has counted the fault; no exception may pass a callback of C.
    }
}

}  // namespace pexa::dds::xml

namespace dds = pexa::dds;
namespace xml = pexa::dds::xml;

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
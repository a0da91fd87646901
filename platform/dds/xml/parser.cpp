#include "platform/dds/xml/parser.hpp"

#include <cstdio>
#include <memory>
#include <utility>

#include "pexa/log.h"
#include "pexa/string.h"
#include "platform/dds/xml/document.hpp"
#include "platform/dds/xml/saving.hpp"
#include "platform/dds/xml/tree_builder.hpp"

namespace pexa::dds::xml {
namespace {

struct FileClose {
    void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
};
using FilePtr = std::unique_ptr<std::FILE, FileClose>;

/// @return whether the file could be read; of one that is too long for a document only so much
/// that it still is.
bool read(const std::string& file_name, std::string& content) {
    const FilePtr file(std::fopen(file_name.c_str(), "rbe"));
    if (file == nullptr) {
        return false;
    }
    char block[16384];
    std::size_t count = 0;
    while (content.size() <= DDS_XML_MAX_DOCUMENT_SIZE &&
           (count = std::fread(block, 1, sizeof block, file.get())) > 0) {
        content.append(block, count);
    }
    return std::ferror(file.get()) == 0;
}

/// Replaces a file as a whole, so that a failure leaves the old one.
bool replace(const std::string& file_name, const std::string& content) {
    const std::string draft = file_name + ".new";
    const auto write = [&] {
        FilePtr file(std::fopen(draft.c_str(), "wbe"));
        return file != nullptr &&
               std::fwrite(content.data(), 1, content.size(), file.get()) == content.size() &&
               std::fclose(file.release()) == 0;
    };
    if (write() && std::rename(draft.c_str(), file_name.c_str()) == 0) {
        return true;
    }
    static_cast<void>(std::remove(draft.c_str()));
    return false;
}

void report(QELLogLevel level, const char* context, const std::string& line) {
    QELLog_printContextAndMsg(QEL_LOG_MODULE_DDS, DDS_SUBMODULE_MASK_QOS, level, context,
                              &QEL_LOG_ANY_s, line.c_str());
}

void report(QELLogLevel level, const char* context, const std::string& file_name,
            const std::vector<Fault>& faults) {
    for (const Fault& fault : faults) {
        std::string line = file_name + ":" + std::to_string(fault.line) + ": ";
        if (!fault.tag_name.empty()) {
            line += fault.tag_name + ": ";
        }
        report(level, context, line + fault.message);
    }
}

void keep(std::vector<Fault>& faults, DDS_Long line, std::string_view tag_name,
          std::string_view message) {
    if (faults.size() < DDS_XML_MAX_ERRORS) {
        faults.push_back({line, std::string(tag_name), std::string(message)});
    }
}

}  // namespace

DDS_XMLExtensionClass* Parser::find_class(std::string_view tag_name) const {
    for (DDS_XMLExtensionClass* known : classes_) {
        if (known->tag_name == tag_name) {
            return known;
        }
    }
    return nullptr;
}

DDS_ReturnCode_t Parser::register_class(const Operation& operation,
                                        DDS_XMLExtensionClass& extension_class) {
    if (used_) {
        return operation.precondition_not_met("no document has been parsed");
    }
    if (find_class(extension_class.tag_name) != nullptr) {
        return operation.precondition_not_met("no class of this tag name is registered");
    }
    classes_.push_back(&extension_class);
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t Parser::result_of_parse(const Operation& operation) const {
    report_faults(operation);
    return root_ != nullptr || fault_count_ == 0 ? DDS_RETCODE_OK : DDS_RETCODE_ERROR;
}

DDS_ReturnCode_t Parser::parse_file(const Operation& operation, const char* file_name) {
    if (used_) {
        return operation.precondition_not_met("no document has been parsed");
    }
    read_file(file_name);
    return result_of_parse(operation);
}

DDS_ReturnCode_t Parser::parse_string(const Operation& operation, const char* name,
                                      const char* text, std::size_t length) {
    if (used_) {
        return operation.precondition_not_met("no document has been parsed");
    }
    read_text(name, {text, length});
    return result_of_parse(operation);
}

void Parser::read_file(const std::string& file_name) {
    std::string content;
    if (!read(file_name, content)) {
        used_ = true;
        file_name_ = file_name;
        add_fault(0, "", "the file cannot be read");
        return;
    }
    read_text(file_name, content);
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

DDS_ReturnCode_t Parser::get_fault(DDS_Long index, DDS_XMLError& error) const {
    if (index < 0 || static_cast<std::size_t>(index) >= faults_.size()) {
        return DDS_RETCODE_NO_DATA;
    }
    const Fault& fault = faults_[static_cast<std::size_t>(index)];
    error = {file_name_.c_str(), fault.line, fault.tag_name.c_str(), fault.message.c_str()};
    return DDS_RETCODE_OK;
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

bool Parser::save(std::string& text) const {
    // Called through the classes' save functions, which no exception may pass.
    const auto append = [](void* data, const char* part, std::size_t length) noexcept {
        try {
            static_cast<std::string*>(data)->append(part, length);
        } catch (const std::bad_alloc&) {
            return DDS_BOOLEAN_FALSE;
        }
        return DDS_BOOLEAN_TRUE;
    };
    QELXMLSaveContext context{0, 0, append, &text};
    save_tree(*root_, context);
    return context.error == 0;
}

DDS_ReturnCode_t Parser::save_file(const Operation& operation, const char* file_name) const {
    if (root_ == nullptr) {
        return operation.precondition_not_met("a document has been parsed");
    }
    std::string text;
    if (!save(text) || !replace(file_name, text)) {
        return operation.failed("saving the tree", DDS_RETCODE_ERROR);
    }
    return DDS_RETCODE_OK;
}

char* Parser::save_string(const Operation& operation) const {
    std::string text;
    if (root_ == nullptr) {
        static_cast<void>(operation.precondition_not_met("a document has been parsed"));
        return nullptr;
    }
    if (!save(text)) {
        static_cast<void>(operation.failed("saving the tree", DDS_RETCODE_ERROR));
        return nullptr;
    }
    char* copy = DDS_String_dup(text.c_str());
    if (copy == nullptr) {
        static_cast<void>(operation.out_of_memory());
    }
    return copy;
}

void add_current_fault(const char* context, const char* message, DDS_Long line) noexcept {
    message = message != nullptr ? message : "";
    try {
        if (TreeBuilder* builder = TreeBuilder::current()) {
            builder->add_fault(message, line);
        } else {
            report(QEL_LOG_LEVEL_ERROR, context != nullptr ? context : "",
                   "line " + std::to_string(line) + ": " + message);
        }
    } catch (const std::bad_alloc&) {
        // The parser counts it all the same; a callback of C lets no exception through.
    }
}

}  // namespace pexa::dds::xml

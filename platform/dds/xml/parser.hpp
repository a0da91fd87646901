/// @file parser.hpp
/// @brief From a document to a tree of objects.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dds/interface/operation.hpp"
#include "platform/dds/xml/object.hpp"

namespace pexa::dds {

namespace xml {
class Parser;
}

template <>
struct HandleTraits<DDS_XMLParser> {
    using Object = xml::Parser;
    static constexpr const char* argument = "parser";
};

namespace xml {

/// A fault of a document, or a warning about it.
struct Fault {
    DDS_Long line;
    std::string tag_name;
    std::string message;
};

/// How a parser treats an element directly below the root that it does not know.
enum class ForeignElements {
    faults,
    warnings,  ///< another reader of the document may know it
};

/// Reads one document and owns its tree.
class Parser {
public:
    using Handle = DDS_XMLParser;

    explicit Parser(ForeignElements foreign_elements = ForeignElements::faults)
        : foreign_elements_(foreign_elements) {}
    Parser(const Parser&) = delete;
    Parser& operator=(const Parser&) = delete;
    ~Parser() = default;

    Status register_class(const Operation& operation, DDS_XMLExtensionClass& extension_class);
    /// Like parse_string() it reports the faults and warnings.
    Status parse_file(const Operation& operation, const char* file_name);
    Status parse_string(const Operation& operation, const char* name, const char* text,
                        std::size_t length);
    /// As parse_file(), but leaves it to the caller to report.
    void read_file(const std::string& file_name);
    /// As parse_string(), but leaves it to the caller to report.
    void read_text(const std::string& name, std::string_view text);

    DDS_XMLObject* root() const { return root_.get(); }
    bool has_failed() const { return fault_count_ != 0; }
    DDS_Long fault_count() const { return fault_count_; }
    Status get_fault(DDS_Long index, DDS_XMLError& error) const;

    /// Adds a fault of the contents. It counts also if there is no memory to keep it.
    void add_fault(DDS_Long line, std::string_view tag_name, std::string_view message);
    /// Adds a warning about the contents.
    void add_warning(DDS_Long line, std::string_view tag_name, std::string_view message);
    /// Writes a line to the middleware's log for each fault and warning that was kept.
    void report_faults(const Operation& operation) const;

    Status save_file(const Operation& operation, const char* file_name) const;
    Result<char*> save_string(const Operation& operation) const;

private:
    friend class TreeBuilder;

    DDS_XMLExtensionClass* find_class(std::string_view tag_name) const;
    Status result_of_parse(const Operation& operation) const;
    /// @return the tree as a text; nothing if a class failed or without memory.
    std::optional<std::string> saved() const;

    ForeignElements foreign_elements_;
    std::vector<DDS_XMLExtensionClass*> classes_;
    std::string file_name_;
    bool used_ = false;
    TreePtr root_;
    std::vector<Fault> faults_;
    std::vector<Fault> warnings_;
    DDS_Long fault_count_ = 0;
};

/// @return a fault with its place, FILE:LINE: ELEMENT: MESSAGE; without an element for an empty
/// name.
std::string text_of_fault(std::string_view file_name, DDS_Long line, std::string_view tag_name,
                          std::string_view message);

/// Adds a fault to the parser that runs on this thread; without one it is only reported.
/// @param context, message may be NULL
/// @param line 0 for the line being parsed
/// @param found the text that is at fault, NULL for none
void add_current_fault(const char* context, const char* message, DDS_Long line,
                       const char* found = nullptr) noexcept;

}  // namespace xml
}  // namespace pexa::dds

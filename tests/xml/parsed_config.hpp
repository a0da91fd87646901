#pragma once

#include <string>

#include "orvane/xml.h"

namespace orvane::test {

/// A document that has been parsed with the `orvane` class registered.
class ParsedConfig {
public:
    explicit ParsedConfig(const std::string& document);
    ~ParsedConfig();
    ParsedConfig(const ParsedConfig&) = delete;
    ParsedConfig& operator=(const ParsedConfig&) = delete;

    /// A line "LINE FUNCTION: MESSAGE" for each parse error that the library has reported.
    [[nodiscard]] const std::string& reports() const { return reports_; }
    [[nodiscard]] bool has_failed() const { return DDS_XMLParser_has_failed(parser_) != 0; }
    /// Of the first `orvane` element; NULL without one.
    [[nodiscard]] QEL_KX_Options* options() const;
    /// The document as it is saved; empty when that fails.
    [[nodiscard]] std::string saved() const;

private:
    std::string reports_;
    DDS_XMLExtensionClass* class_;
    DDS_XMLParser* parser_;
};

/// Elements inside each other and a text: `a/b` and `c` give `<a><b>c</b></a>`.
std::string as_xml(const std::string& path, const std::string& text);
/// A document with these children of an `orvane` element, from line 3 on.
std::string with_orvane(const std::string& children);

/// Appends what it is given to the reports of the parse that goes on; else it is lost.
void note_parse_error(const char* message, const char* function_name, DDS_Long line);

/// The options that differ from an `orvane` element without children: "filter_level=400 mask=3".
std::string differences(const QEL_KX_Options& options);

}  // namespace orvane::test

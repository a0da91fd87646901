#pragma once

#include <memory>
#include <string>
#include <vector>

#include "pexa/xml.h"

struct XmlParserDelete {
    void operator()(DDS_XMLParser* parser) const { DDS_XMLParser_delete(parser); }
};
using XmlParserPtr = std::unique_ptr<DDS_XMLParser, XmlParserDelete>;

inline XmlParserPtr new_parser() {
    return XmlParserPtr(DDS_XMLParser_new());
}

inline DDS_ReturnCode_t parse(const XmlParserPtr& parser, const std::string& text) {
    return DDS_XMLParser_parse_string(parser.get(), "text.xml", text.data(), text.size());
}

/// @return "line tag: message" of each error
inline std::vector<std::string> errors_of(const XmlParserPtr& parser) {
    std::vector<std::string> errors;
    DDS_XMLError error;
    for (DDS_Long i = 0; DDS_XMLParser_get_error(parser.get(), i, &error) == DDS_RETCODE_OK; ++i) {
        errors.push_back(std::to_string(error.line) + " " + error.tagName + ": " + error.message);
    }
    return errors;
}

/// @return the names in a tree: "name(child child(grandchild))"
inline std::string outline(const DDS_XMLObject* object) {
    std::string text = DDS_XMLObject_get_tag_name(object);
    const DDS_XMLObject* child = DDS_XMLObject_get_first_child(object);
    if (child == nullptr) {
        return text;
    }
    text += "(";
    for (; child != nullptr; child = DDS_XMLObject_get_next_sibling(child)) {
        text += outline(child);
        text += DDS_XMLObject_get_next_sibling(child) != nullptr ? " " : "";
    }
    return text + ")";
}

/// @file document.hpp
/// @brief Reading the text of an XML document, within limits.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "pexa/xml.h"

namespace pexa::dds::xml {

/// Gets the elements of a document in their order. An exception of a handler ends the reading, and
/// read_document() throws it.
class DocumentHandler {
public:
    DocumentHandler() = default;
    DocumentHandler(const DocumentHandler&) = delete;
    DocumentHandler& operator=(const DocumentHandler&) = delete;
    virtual ~DocumentHandler() = default;

    /// @param attributes names and values in turn, ended by NULL
    virtual void on_start(const char* name, const char* const* attributes, DDS_Long line) = 0;
    /// @param text the element's own, without the white space at both ends
    virtual void on_end(const char* name, const std::string& text, DDS_Long line) = 0;
};

/// The reason why a document cannot be read.
struct DocumentFault {
    DDS_Long line;
    std::string message;
};

/// @return nothing when the whole document was read.
std::optional<DocumentFault> read_document(std::string_view text, DocumentHandler& handler);

}  // namespace pexa::dds::xml

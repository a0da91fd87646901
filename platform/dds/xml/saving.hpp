/// @file saving.hpp
/// @brief Writing objects as XML.
#pragma once

#include <cstdarg>
#include <string_view>

#include "platform/dds/xml/object.hpp"

namespace pexa::dds::xml {

/// Writes an object with everything below it. A plain object's text comes before its children.
void save_tree(DDS_XMLObject& object, QELXMLSaveContext& context);

/// @name The exported helpers
/// A NULL context and one with an error are left alone.
/// @{
void write(QELXMLSaveContext* context, std::string_view text);
void write_formatted(QELXMLSaveContext* context, const char* format, std::va_list arguments)
    __attribute__((format(printf, 2, 0)));
void write_indentation(QELXMLSaveContext* context);
void save_tag(const char* tag_name, int kind, QELXMLSaveContext* context);
/// @param text is escaped
void save_text(const char* tag_name, std::string_view text, QELXMLSaveContext* context);
void save_numbers(const char* tag_name, const DDS_LongSeq* numbers, QELXMLSaveContext* context);
/// @}

}  // namespace pexa::dds::xml

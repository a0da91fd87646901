/// @file object.hpp
/// @brief The objects of a tree, and the classes of those that are not plain.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "pexa/xml.h"

/// Outside of any namespace, as it is the type behind the handle.
struct DDS_XMLExtensionClass {
    std::string tag_name;
    void* user_data;
    DDS_XMLOnStartElementFunction on_start;
    DDS_XMLOnEndElementFunction on_end;
    DDS_XMLObjectNewFunction new_object;
    DDS_XMLObjectDeleteFunction delete_object;
    DDS_XMLObjectSaveFunction save;
};

namespace pexa::dds::xml {

/// An element without a class.
struct PlainObject : DDS_XMLObject {
    /// @param attributes names and values in turn, ended by NULL. May throw std::bad_alloc.
    PlainObject(DDS_XMLObject* parent, const char* tag_name, const char* const* attributes,
                DDS_Long line);
    PlainObject(const PlainObject&) = delete;
    PlainObject& operator=(const PlainObject&) = delete;
    ~PlainObject();

    /// @return NULL for an attribute that the element does not have.
    [[nodiscard]] const std::string* attribute(std::string_view name) const;

    DDS_Long line;
    std::vector<std::pair<std::string, std::string>> attributes;
    std::string text;
};

/// @return the plain object, NULL for NULL and for one of a class.
[[nodiscard]] const PlainObject* as_plain(const DDS_XMLObject* object);

/// Puts a new object behind the other children of its parent.
void append_child(DDS_XMLObject& parent, DDS_XMLObject& child);

/// Deletes an object and everything below it.
struct TreeDelete {
    void operator()(DDS_XMLObject* root) const;
};
using TreePtr = std::unique_ptr<DDS_XMLObject, TreeDelete>;

[[nodiscard]] DDS_Boolean initialize(DDS_XMLObject* self, DDS_XMLExtensionClass* extension_class,
                                     DDS_XMLObject* parent, const char* tag_name);
void finalize(DDS_XMLObject* self);

}  // namespace pexa::dds::xml

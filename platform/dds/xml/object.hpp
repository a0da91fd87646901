/// @file object.hpp
/// @brief The objects of a tree.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "pexa/xml.h"
#include "platform/dds/xml/extension_class.hpp"
#include "platform/internal/status.hpp"

namespace pexa::dds::xml {

/// The object of an element without a class.
struct PlainObject : DDS_XMLObject {
    /// @param attributes names and values in turn, ended by NULL. May throw std::bad_alloc.
    PlainObject(DDS_XMLObject* parent, const char* tag_name, const char* const* attributes,
                DDS_Long line);
    PlainObject(const PlainObject&) = delete;
    PlainObject& operator=(const PlainObject&) = delete;
    ~PlainObject();

    /// @return NULL for an attribute that the element does not have.
    const std::string* attribute(std::string_view name) const;

    DDS_Long line;
    std::vector<std::pair<std::string, std::string>> attributes;
    std::string text;
};

/// @return the plain object, NULL for NULL and for an object of a class.
const PlainObject* as_plain(const DDS_XMLObject* object);

/// Puts a new object behind the other children of its parent.
void append_child(DDS_XMLObject& parent, DDS_XMLObject& child);

/// Deletes an object and everything below it.
struct TreeDelete {
    void operator()(DDS_XMLObject* root) const;
};
using TreePtr = std::unique_ptr<DDS_XMLObject, TreeDelete>;

/// Fails for NULL and without memory; the object is then zero-filled.
Status initialize(DDS_XMLObject* self, DDS_XMLExtensionClass* extension_class,
                  DDS_XMLObject* parent, const char* tag_name);
void finalize(DDS_XMLObject* self);

}  // namespace pexa::dds::xml

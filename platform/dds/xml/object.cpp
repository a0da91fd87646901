#include "platform/dds/xml/object.hpp"

#include <new>

#include "pexa/string.h"

namespace pexa::dds::xml {

PlainObject::PlainObject(DDS_XMLObject* parent_object, const char* tag_name,
                         const char* const* names_and_values, DDS_Long line_number)
    : DDS_XMLObject{}, line(line_number) {
    for (; *names_and_values != nullptr; names_and_values += 2) {
        attributes.emplace_back(names_and_values[0], names_and_values[1]);
    }
    // Last, for an object whose constructor throws is not destroyed.
    if (initialize(this, nullptr, parent_object, tag_name) != Status::ok) {
        throw std::bad_alloc();
    }
}

PlainObject::~PlainObject() {
    finalize(this);
}

const std::string* PlainObject::attribute(std::string_view name) const {
    for (const auto& [known, value] : attributes) {
        if (known == name) {
            return &value;
        }
    }
    return nullptr;
}

const PlainObject* as_plain(const DDS_XMLObject* object) {
    return object != nullptr && object->extensionClass == nullptr
               ? static_cast<const PlainObject*>(object)
               : nullptr;
}

void append_child(DDS_XMLObject& parent, DDS_XMLObject& child) {
    (parent.firstChild == nullptr ? parent.firstChild : parent.lastChild->nextSibling) = &child;
    parent.lastChild = &child;
}

// The depth of a tree is limited, and only the depth is walked by recursion.
void TreeDelete::operator()(DDS_XMLObject* root) const {
    DDS_XMLObject* child = root->firstChild;
    while (child != nullptr) {
        DDS_XMLObject* next = child->nextSibling;
        (*this)(child);
        child = next;
    }
    if (root->extensionClass != nullptr) {
        root->extensionClass->delete_object(root);
    } else {
        delete static_cast<PlainObject*>(root);
    }
}

Status initialize(DDS_XMLObject* self, DDS_XMLExtensionClass* extension_class,
                  DDS_XMLObject* parent, const char* tag_name) {
    if (self == nullptr) {
        return Status::bad_parameter;
    }
    *self = {};
    self->tagName = DDS_String_dup(tag_name);
    if (self->tagName == nullptr) {
        return Status::out_of_resources;
    }
    self->extensionClass = extension_class;
    self->parent = parent;
    return Status::ok;
}

void finalize(DDS_XMLObject* self) {
    if (self != nullptr) {
        DDS_String_free(self->tagName);
        *self = {};
    }
}

}  // namespace pexa::dds::xml

namespace xml = pexa::dds::xml;

DDS_Boolean DDS_XMLObject_initialize(DDS_XMLObject* self, DDS_XMLExtensionClass* extensionClass,
                                     DDS_XMLObject* parent, const char* tagName,
                                     DDS_Long /*reserved*/) {
    return xml::initialize(self, extensionClass, parent, tagName) == pexa::Status::ok
               ? DDS_BOOLEAN_TRUE
               : DDS_BOOLEAN_FALSE;
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

#include "platform/dds/xml/extension_class.hpp"

#include <memory>

#include "platform/dds/interface/operation.hpp"

namespace pexa::dds::xml {
namespace {

/// @param content all but the tag name
Result<DDS_XMLExtensionClass*> new_class(const Operation& operation, const char* tag_name,
                                         const void* reserved1, const void* reserved2,
                                         const DDS_XMLExtensionClass& content) {
    const char* refused = tag_name == nullptr                ? "tagName"
                          : reserved1 != nullptr             ? "reserved1"
                          : reserved2 != nullptr             ? "reserved2"
                          : content.new_object == nullptr    ? "newObject"
                          : content.delete_object == nullptr ? "deleteObject"
                                                             : nullptr;
    if (refused != nullptr) {
        return operation.bad_parameter(refused);
    }
    auto made = std::make_unique<DDS_XMLExtensionClass>(content);
    made->tag_name = tag_name;
    return made.release();
}

}  // namespace
}  // namespace pexa::dds::xml

namespace dds = pexa::dds;

DDS_XMLExtensionClass* DDS_XMLExtensionClass_new(const char* tagName, void* userData,
                                                 const void* reserved1, const void* reserved2,
                                                 DDS_XMLOnStartElementFunction onStartElement,
                                                 DDS_XMLOnEndElementFunction onEndElement,
                                                 DDS_XMLObjectNewFunction newObject,
                                                 DDS_XMLObjectDeleteFunction deleteObject,
                                                 DDS_XMLObjectSaveFunction save) {
    const dds::Operation operation(__func__);
    return dds::guarded(operation, [&] {
        return dds::xml::new_class(
            operation, tagName, reserved1, reserved2,
            {{}, userData, onStartElement, onEndElement, newObject, deleteObject, save});
    });
}

void DDS_XMLExtensionClass_delete(DDS_XMLExtensionClass* self) {
    delete self;
}

void* DDS_XMLExtensionClass_get_user_data(const DDS_XMLExtensionClass* self) {
    return self != nullptr ? self->user_data : nullptr;
}

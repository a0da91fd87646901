/// @file extension_class.hpp
/// @brief A class of objects: the callbacks for the elements of one name.
#pragma once

#include <string>

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

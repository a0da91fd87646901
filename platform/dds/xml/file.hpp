/// @file file.hpp
/// @brief Reading and replacing files as a whole.
#pragma once

#include <string>

#include "platform/internal/status.hpp"

namespace pexa::dds::xml {

struct FileContent {
    std::string text;
    int error = 0;  ///< the errno of a file that cannot be read
};

/// Of a file that is too long for a document the end is not read.
FileContent read_file(const std::string& file_name);

/// Replaces a file. After a failure the old one is there.
Status replace_file(const std::string& file_name, const std::string& content);

}  // namespace pexa::dds::xml

/// @file output_file.hpp
/// @brief A file that grows, and never keeps half of what was to be added.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace orvane::tools {

class OutputFile {
public:
    OutputFile() = default;
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    virtual ~OutputFile() = default;

    /// Adds the bytes, or nothing. @return 0, or the errno of the failure
    virtual int append(std::string_view bytes) = 0;

    /// Whether a failure left a part of the bytes in the file, so that nothing can be added any
    /// more.
    virtual bool is_torn() const = 0;
};

/// Creates a file. Takes a file that is there when it is a device or a pipe.
/// @param error the errno when the result is null
std::unique_ptr<OutputFile> create_file(const std::string& path, int& error);

using CreateFile = std::function<decltype(create_file)>;

}  // namespace orvane::tools

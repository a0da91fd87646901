#include "platform/dds/xml/file.hpp"

#include <cerrno>
#include <cstdio>
#include <memory>

#include "pexa/xml.h"

namespace pexa::dds::xml {
namespace {

struct FileClose {
    // A file that was written is closed by hand, and its result is looked at.
    void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
};
using FilePtr = std::unique_ptr<std::FILE, FileClose>;

Status write_file(const std::string& file_name, const std::string& content) {
    FilePtr file(std::fopen(file_name.c_str(), "wbe"));
    const bool is_written =
        file != nullptr &&
        std::fwrite(content.data(), 1, content.size(), file.get()) == content.size() &&
        std::fclose(file.release()) == 0;
    return is_written ? Status::ok : Status::error;
}

}  // namespace

FileContent read_file(const std::string& file_name) {
    const FilePtr file(std::fopen(file_name.c_str(), "rbe"));
    if (file == nullptr) {
        return {{}, errno};
    }
    FileContent content;
    char block[16384];
    std::size_t count = 0;
    while (content.text.size() <= DDS_XML_MAX_DOCUMENT_SIZE &&
           (count = std::fread(block, 1, sizeof block, file.get())) > 0) {
        content.text.append(block, count);
    }
    content.error = std::ferror(file.get()) != 0 ? errno : 0;
    return content;
}

Status replace_file(const std::string& file_name, const std::string& content) {
    const std::string draft = file_name + ".new";
    if (write_file(draft, content) == Status::ok &&
        std::rename(draft.c_str(), file_name.c_str()) == 0) {
        return Status::ok;
    }
    // There may be no draft.
    static_cast<void>(std::remove(draft.c_str()));
    return Status::error;
}

}  // namespace pexa::dds::xml

/// @file next_file.hpp
/// @brief How the files of one recording follow each other by their names.
#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>

namespace orvane::tools {

/// "log.2.mcap" for "log.mcap" and 2.
std::string numbered_path(const std::string& path, std::uint64_t number);

/// A file behind another one.
struct NextFile {
    std::string path;
    bool is_adjacent = true;  ///< no file between them has been deleted
};

/// Looks for the file with which a recording goes on: the one with the next higher number that was
/// written later. Names that are passed over belong to earlier recordings.
/// @param path a file of the recording. Without a number it is the first one.
/// @param last_write of that file, by the clock of the file system
/// @return nothing when there is none yet
std::optional<NextFile> next_file(const std::string& path, const timespec& last_write);

}  // namespace orvane::tools

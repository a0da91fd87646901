/// @file recording_format.hpp
/// @brief The formats of recordings.
#pragma once

#include <optional>
#include <string>

namespace orvane::tools {

enum class RecordingFormat { json_lines, mcap };

/// The format that the ending of a file's name says: ".mcap", ".jsonl" or ".json".
std::optional<RecordingFormat> format_of_file(const std::string& file);

/// What @ref format_of_file takes, for messages to the user.
inline constexpr const char* recording_endings = ".mcap, .jsonl or .json";

}  // namespace orvane::tools

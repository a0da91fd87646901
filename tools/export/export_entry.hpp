/// @file export_entry.hpp
/// @brief An event as a line in another system of logs.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/records/recorded_event.hpp"

namespace orvane::tools {

/// What every system of logs has a place for. The views are of the event.
struct ExportEntry {
    std::int64_t nanoseconds = 0;  ///< since 1970-01-01 UTC
    std::int32_t level = 0;
    std::string_view category{};     ///< of a message
    std::string text{};              ///< not always UTF-8
    const Logger* logger = nullptr;  ///< none for a gap
    /// Of a message in another's name.
    const Publisher* publisher = nullptr;
    /// "loss", "gap", or what became of a logger: "appeared", "changed", "gone". Empty for a
    /// message.
    std::string_view event{};
    std::vector<std::pair<std::string_view, std::uint64_t>> numbers{};  ///< of a loss or a gap
};

ExportEntry entry_of(const RecordedEvent& event);

}  // namespace orvane::tools

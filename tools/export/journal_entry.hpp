/// @file journal_entry.hpp
/// @brief Records as the journal of systemd has them.
#pragma once

#include <string>

#include "tools/records/recorded_event.hpp"

namespace orvane::tools {

/// The fields of an entry in the native protocol of the journal. Each byte that is not UTF-8
/// becomes U+FFFD.
std::string journal_entry(const RecordedEvent& event);

}  // namespace orvane::tools

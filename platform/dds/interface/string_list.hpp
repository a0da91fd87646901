/// @file string_list.hpp
/// @brief Lists of texts in the C interface's sequences.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "pexa/sequence.h"
#include "platform/internal/status.hpp"

namespace pexa::dds {

/// @param text NULL counts as empty
inline std::string_view view_of(const char* text) {
    return text != nullptr ? text : std::string_view();
}

/// @param sequence NULL counts as empty, and so does a NULL text in it
std::vector<std::string> to_strings(const DDS_StringSeq* sequence);

/// Replaces the content of a sequence.
/// @return OK, or OUT_OF_RESOURCES: no memory, or a lent buffer that is too small
Status store_strings(const std::vector<std::string>& strings, DDS_StringSeq& sequence);

}  // namespace pexa::dds

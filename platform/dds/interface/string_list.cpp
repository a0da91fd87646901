#include "platform/dds/interface/string_list.hpp"

#include "pexa/string.h"
#include "platform/dds/interface/standard_sequences.hpp"

namespace pexa::dds {

std::vector<std::string> to_strings(const DDS_StringSeq* sequence) {
    std::vector<std::string> strings;
    const DDS_Long count = sequence != nullptr ? length_of(*sequence) : 0;
    strings.reserve(static_cast<std::size_t>(count));
    for (DDS_Long i = 0; i < count; ++i) {
        strings.emplace_back(view_of(element_of(*sequence, i)));
    }
    return strings;
}

Status store_strings(const std::vector<std::string>& strings, DDS_StringSeq& sequence) {
    const auto count = static_cast<DDS_Long>(strings.size());
    if (DDS_StringSeq_ensure_length(&sequence, count, count) == 0) {
        return Status::out_of_resources;
    }
    for (DDS_Long i = 0; i < count; ++i) {
        char** text = DDS_StringSeq_get_reference(&sequence, i);
        if (DDS_String_replace(text, strings[static_cast<std::size_t>(i)].c_str()) == nullptr) {
            return Status::out_of_resources;
        }
    }
    return Status::ok;
}

}  // namespace pexa::dds

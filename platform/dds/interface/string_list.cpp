#include "platform/dds/interface/string_list.hpp"

#include "pexa/string.h"
#include "platform/dds/interface/standard_sequences.hpp"

namespace pexa::dds {

std::vector<std::string> to_strings(const DDS_StringSeq* sequence) {
    std::vector<std::string> strings;
    const DDS_Long count = sequence != nullptr ? length_of(*sequence) : 0;
    for (DDS_Long i = 0; i < count; ++i) {
        const char* text = element_of(*sequence, i);
        strings.emplace_back(text != nullptr ? text : "");
    }
    return strings;
}

DDS_ReturnCode_t store_strings(const std::vector<std::string>& strings, DDS_StringSeq& sequence) {
    const auto count = static_cast<DDS_Long>(strings.size());
    if (DDS_StringSeq_ensure_length(&sequence, count, count) == 0) {
        return DDS_RETCODE_OUT_OF_RESOURCES;
    }
    for (DDS_Long i = 0; i < count; ++i) {
        char** text = DDS_StringSeq_get_reference(&sequence, i);
        if (DDS_String_replace(text, strings[static_cast<std::size_t>(i)].c_str()) == nullptr) {
            return DDS_RETCODE_OUT_OF_RESOURCES;
        }
    }
    return DDS_RETCODE_OK;
}

}  // namespace pexa::dds

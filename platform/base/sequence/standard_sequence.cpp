#include "platform/base/memory/string.hpp"
#include "platform/base/result.hpp"
#include "platform/internal/sequence_define.hpp"

namespace pexa::base {
namespace {

char*& string_in(void* element) {
    return *static_cast<char**>(element);
}

DDS_Boolean initialize_string(void* element, const DDS_TypeAllocationParams_t* params) {
    if (params->allocate_memory == 0) {
        string_in(element) = nullptr;
        return DDS_BOOLEAN_TRUE;
    }
    string_in(element) = allocate_string(0);
    return to_boolean(string_in(element) != nullptr);
}

void finalize_string(void* element, const DDS_TypeDeallocationParams_t* /*params*/) {
    free_string(string_in(element));
    string_in(element) = nullptr;
}

DDS_Boolean copy_string(void* destination, const void* source) {
    const char* text = *static_cast<const char* const*>(source);
    if (text == nullptr) {
        free_string(string_in(destination));
        string_in(destination) = nullptr;
        return DDS_BOOLEAN_TRUE;
    }
    return to_boolean(replace_string(&string_in(destination), text) != nullptr);
}

constexpr PEXASequenceElement octet = plain_sequence_element<DDS_Octet>("DDS_OctetSeq");
constexpr PEXASequenceElement number = plain_sequence_element<DDS_Long>("DDS_LongSeq");
constexpr PEXASequenceElement string = {"DDS_StringSeq", sizeof(char*), initialize_string,
                                        finalize_string, copy_string};
constexpr PEXASequenceElement handle =
    plain_sequence_element<DDS_InstanceHandle_t>("DDS_InstanceHandleSeq");

}  // namespace
}  // namespace pexa::base

PEXA_SEQUENCE_DEFINE(DDS_OctetSeq, DDS_Octet, pexa::base::octet);
PEXA_SEQUENCE_DEFINE(DDS_LongSeq, DDS_Long, pexa::base::number);
PEXA_SEQUENCE_DEFINE(DDS_StringSeq, char*, pexa::base::string);
PEXA_SEQUENCE_DEFINE(DDS_InstanceHandleSeq, DDS_InstanceHandle_t, pexa::base::handle);

#include "pexa/string.h"
#include "platform/internal/sequence_define.hpp"

namespace {

char*& string_in(void* element) {
    return *static_cast<char**>(element);
}

DDS_Boolean initialize_string(void* element, const DDS_TypeAllocationParams_t* params) {
    if (params->allocate_memory == 0) {
        string_in(element) = nullptr;
        return DDS_BOOLEAN_TRUE;
    }
    string_in(element) = DDS_String_alloc(0);
    return string_in(element) != nullptr ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
}

void finalize_string(void* element, const DDS_TypeDeallocationParams_t* /*params*/) {
    DDS_String_free(string_in(element));
    string_in(element) = nullptr;
}

DDS_Boolean copy_string(void* destination, const void* source) {
    const char* text = *static_cast<const char* const*>(source);
    if (text == nullptr) {
        DDS_String_free(string_in(destination));
        string_in(destination) = nullptr;
        return DDS_BOOLEAN_TRUE;
    }
    return DDS_String_replace(&string_in(destination), text) != nullptr ? DDS_BOOLEAN_TRUE
                                                                        : DDS_BOOLEAN_FALSE;
}

constexpr PEXASequenceElement octet = pexa::plain_sequence_element<DDS_Octet>("DDS_OctetSeq");
constexpr PEXASequenceElement number = pexa::plain_sequence_element<DDS_Long>("DDS_LongSeq");
constexpr PEXASequenceElement string = {"DDS_StringSeq", sizeof(char*), initialize_string,
                                        finalize_string, copy_string};
constexpr PEXASequenceElement handle =
    pexa::plain_sequence_element<DDS_InstanceHandle_t>("DDS_InstanceHandleSeq");

}  // namespace

PEXA_SEQUENCE_DEFINE(DDS_OctetSeq, DDS_Octet, octet);
PEXA_SEQUENCE_DEFINE(DDS_LongSeq, DDS_Long, number);
PEXA_SEQUENCE_DEFINE(DDS_StringSeq, char*, string);
PEXA_SEQUENCE_DEFINE(DDS_InstanceHandleSeq, DDS_InstanceHandle_t, handle);

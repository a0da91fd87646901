#include "pexa/qos.h"
#include "pexa/string.h"
#include "pexa/subscription.h"
#include "platform/internal/sequence_define.hpp"

namespace {

DDS_Boolean truth(bool value) {
    return value ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
}

bool initialize_string(char*& text, const DDS_TypeAllocationParams_t& params) {
    if (params.allocate_memory != 0) {
        text = DDS_String_alloc(0);
        return text != nullptr;
    }
    if (text != nullptr) {
        text[0] = '\0';
    }
    return true;
}

bool copy_string(char*& destination, const char* source) {
    if (source != nullptr) {
        return DDS_String_replace(&destination, source) != nullptr;
    }
    DDS_String_free(destination);
    destination = nullptr;
    return true;
}

DDS_Property_t& property_in(void* element) {
    return *static_cast<DDS_Property_t*>(element);
}

// Two owned texts, each as an element of DDS_StringSeq; both empty at first.
DDS_Boolean initialize_property(void* element, const DDS_TypeAllocationParams_t* params) {
    DDS_Property_t& property = property_in(element);
    return truth(initialize_string(property.name, *params) &&
                 initialize_string(property.value, *params));
}

void finalize_property(void* element, const DDS_TypeDeallocationParams_t* /*params*/) {
    DDS_Property_t& property = property_in(element);
    DDS_String_free(property.name);
    DDS_String_free(property.value);
    property = {nullptr, nullptr};
}

DDS_Boolean copy_property(void* destination, const void* source) {
    DDS_Property_t& property = property_in(destination);
    const auto* from = static_cast<const DDS_Property_t*>(source);
    return truth(copy_string(property.name, from->name) &&
                 copy_string(property.value, from->value));
}

constexpr PEXASequenceElement property = {"DDS_PropertySeq", sizeof(DDS_Property_t),
                                          initialize_property, finalize_property, copy_property};
constexpr PEXASequenceElement info =
    pexa::plain_sequence_element<DDS_SampleInfo>("DDS_SampleInfoSeq");
constexpr PEXASequenceElement condition =
    pexa::plain_sequence_element<DDS_Condition*>("DDS_ConditionSeq");

}  // namespace

PEXA_SEQUENCE_DEFINE(DDS_PropertySeq, DDS_Property_t, property);
PEXA_SEQUENCE_DEFINE(DDS_SampleInfoSeq, DDS_SampleInfo, info);
PEXA_SEQUENCE_DEFINE(DDS_ConditionSeq, DDS_Condition*, condition);

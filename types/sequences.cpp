#include "platform/internal/sequence_define.hpp"
#include "types/values.hpp"

namespace orvane::types {

namespace {

template <typename T>
DDS_Boolean initialise_element(void* element, const DDS_TypeAllocationParams_t* params) {
    return initialise(Description<T>::table, element, *params);
}

template <typename T>
void finalise_element(void* element, const DDS_TypeDeallocationParams_t* /*params*/) {
    finalise(Description<T>::table, element);
}

template <typename T>
DDS_Boolean copy_element(void* destination, const void* source) {
    return copy(Description<T>::table, destination, source);
}

}  // namespace

#define DEFINE_ELEMENT(T)                                                    \
    constinit const PEXASequenceElement Description<T>::sequence_element = { \
        .sequenceName = #T "Seq",                                            \
        .size = sizeof(T),                                                   \
        .initialize = initialise_element<T>,                                 \
        .finalize = finalise_element<T>,                                     \
        .copy = copy_element<T>,                                             \
    };
ORVANE_TYPES(DEFINE_ELEMENT)

}  // namespace orvane::types

#define DEFINE_SEQUENCE(T) \
    PEXA_SEQUENCE_DEFINE(T##Seq, T, orvane::types::Description<T>::sequence_element);
ORVANE_TYPES(DEFINE_SEQUENCE)

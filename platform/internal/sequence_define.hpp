/**
 * @file sequence_define.hpp
 * @brief Definitions of a sequence type's thirty operations, for C++ sources.
 */
#ifndef PEXA_SEQUENCE_DEFINE_HPP
#define PEXA_SEQUENCE_DEFINE_HPP

#include <string.h>

#include "pexa/sequence.h"

namespace pexa {

/// Element operations of a type that owns no memory: its initial value is zero in all bytes, and a
/// copy is a copy of the bytes.
template <class Element>
struct PlainElement {
    static_assert(__is_trivially_copyable(Element));

    static DDS_Boolean initialize(void* element, const DDS_TypeAllocationParams_t* /*params*/) {
        memset(element, 0, sizeof(Element));
        return DDS_BOOLEAN_TRUE;
    }
    static void finalize(void* /*element*/, const DDS_TypeDeallocationParams_t* /*params*/) {}
    static DDS_Boolean copy(void* destination, const void* source) {
        memmove(destination, source, sizeof(Element));
        return DDS_BOOLEAN_TRUE;
    }
};

/// Describes a plain element of the sequence type that is named.
template <class Element>
constexpr PEXASequenceElement plain_sequence_element(const char* sequence_name) {
    using Operations = PlainElement<Element>;
    return {sequence_name, sizeof(Element), Operations::initialize, Operations::finalize,
            Operations::copy};
}

/// @return what @p element points at, or a zero value where there is none.
template <class Element>
Element element_or_zero(const void* element) {
    return element == nullptr ? Element() : *static_cast<const Element*>(element);
}

/// @return the typed sequence as the untyped one, which has the same members.
template <class Sequence>
PEXASequence* any_sequence(Sequence* sequence) {
    static_assert(sizeof(Sequence) == sizeof(PEXASequence));
    return reinterpret_cast<PEXASequence*>(sequence);
}
template <class Sequence>
const PEXASequence* any_sequence(const Sequence* sequence) {
    static_assert(sizeof(Sequence) == sizeof(PEXASequence));
    return reinterpret_cast<const PEXASequence*>(sequence);
}

}  // namespace pexa

/**
 * Defines the operations that PEXA_SEQUENCE_OPERATIONS declares.
 * @param Seq, Element as in the declaration.
 * @param elementDescription a PEXASequenceElement with static lifetime.
 */
#define PEXA_SEQUENCE_DEFINE(Seq, Element, elementDescription)                                     \
    extern "C" {                                                                                   \
    DDS_Boolean Seq##_initialize(Seq* self) {                                                      \
        return PEXASequence_initialize(pexa::any_sequence(self), &(elementDescription));           \
    }                                                                                              \
    DDS_Boolean Seq##_finalize(Seq* self) {                                                        \
        return PEXASequence_finalize(pexa::any_sequence(self), &(elementDescription));             \
    }                                                                                              \
    DDS_Long Seq##_get_maximum(Seq* self) {                                                        \
        return PEXASequence_get_maximum(pexa::any_sequence(self), &(elementDescription));          \
    }                                                                                              \
    DDS_Boolean Seq##_set_maximum(Seq* self, DDS_Long maximum) {                                   \
        return PEXASequence_set_maximum(pexa::any_sequence(self), &(elementDescription), maximum); \
    }                                                                                              \
    DDS_Long Seq##_get_length(Seq* self) {                                                         \
        return PEXASequence_get_length(pexa::any_sequence(self), &(elementDescription));           \
    }                                                                                              \
    DDS_Boolean Seq##_set_length(Seq* self, DDS_Long length) {                                     \
        return PEXASequence_set_length(pexa::any_sequence(self), &(elementDescription), length);   \
    }                                                                                              \
    DDS_Boolean Seq##_ensure_length(Seq* self, DDS_Long length, DDS_Long maximum) {                \
        return PEXASequence_ensure_length(pexa::any_sequence(self), &(elementDescription), length, \
                                          maximum);                                                \
    }                                                                                              \
    Element Seq##_get(Seq* self, DDS_Long index) {                                                 \
        return pexa::element_or_zero<Element>(                                                     \
            PEXASequence_get(pexa::any_sequence(self), &(elementDescription), index));             \
    }                                                                                              \
    Element* Seq##_get_reference(Seq* self, DDS_Long index) {                                      \
        return static_cast<Element*>(                                                              \
            PEXASequence_get_reference(pexa::any_sequence(self), &(elementDescription), index));   \
    }                                                                                              \
    Seq* Seq##_copy(Seq* self, const Seq* source) {                                                \
        return reinterpret_cast<Seq*>(PEXASequence_copy(                                           \
            pexa::any_sequence(self), &(elementDescription), pexa::any_sequence(source)));         \
    }                                                                                              \
    DDS_Boolean Seq##_copy_no_alloc(Seq* self, const Seq* source) {                                \
        return PEXASequence_copy_no_alloc(pexa::any_sequence(self), &(elementDescription),         \
                                          pexa::any_sequence(source));                             \
    }                                                                                              \
    DDS_Boolean Seq##_copy_no_allocI(Seq* self, const Seq* source) {                               \
        return PEXASequence_copy_no_allocI(pexa::any_sequence(self), &(elementDescription),        \
                                           pexa::any_sequence(source));                            \
    }                                                                                              \
    DDS_Boolean Seq##_loan_contiguous(Seq* self, Element* buffer, DDS_Long length,                 \
                                      DDS_Long maximum) {                                          \
        return PEXASequence_loan_contiguous(pexa::any_sequence(self), &(elementDescription),       \
                                            buffer, length, maximum);                              \
    }                                                                                              \
    DDS_Boolean Seq##_loan_discontiguous(Seq* self, Element** pointers, DDS_Long length,           \
                                         DDS_Long maximum) {                                       \
        return PEXASequence_loan_discontiguous(pexa::any_sequence(self), &(elementDescription),    \
                                               reinterpret_cast<void**>(pointers), length,         \
                                               maximum);                                           \
    }                                                                                              \
    DDS_Boolean Seq##_unloan(Seq* self) {                                                          \
        return PEXASequence_unloan(pexa::any_sequence(self), &(elementDescription));               \
    }                                                                                              \
    DDS_Boolean Seq##_has_ownership(Seq* self) {                                                   \
        return PEXASequence_has_ownership(pexa::any_sequence(self), &(elementDescription));        \
    }                                                                                              \
    Element* Seq##_get_contiguous_buffer(Seq* self) {                                              \
        return static_cast<Element*>(                                                              \
            PEXASequence_get_contiguous_buffer(pexa::any_sequence(self), &(elementDescription)));  \
    }                                                                                              \
    Element* Seq##_get_contiguous_bufferI(Seq* self) {                                             \
        return static_cast<Element*>(                                                              \
            PEXASequence_get_contiguous_bufferI(pexa::any_sequence(self), &(elementDescription))); \
    }                                                                                              \
    Element** Seq##_get_discontiguous_buffer(Seq* self) {                                          \
        return reinterpret_cast<Element**>(PEXASequence_get_discontiguous_buffer(                  \
            pexa::any_sequence(self), &(elementDescription)));                                     \
    }                                                                                              \
    Element** Seq##_get_discontiguous_bufferI(Seq* self) {                                         \
        return reinterpret_cast<Element**>(PEXASequence_get_discontiguous_bufferI(                 \
            pexa::any_sequence(self), &(elementDescription)));                                     \
    }                                                                                              \
    DDS_Boolean Seq##_to_array(Seq* self, Element* array, DDS_Long count) {                        \
        return PEXASequence_to_array(pexa::any_sequence(self), &(elementDescription), array,       \
                                     count);                                                       \
    }                                                                                              \
    DDS_Boolean Seq##_from_array(Seq* self, Element const* array, DDS_Long count) {                \
        return PEXASequence_from_array(pexa::any_sequence(self), &(elementDescription), array,     \
                                       count);                                                     \
    }                                                                                              \
    DDS_Boolean Seq##_get_element_pointers_allocation(const Seq* self) {                           \
        return PEXASequence_get_element_pointers_allocation(pexa::any_sequence(self));             \
    }                                                                                              \
    DDS_Boolean Seq##_set_element_pointers_allocation(Seq* self, DDS_Boolean allocate) {           \
        return PEXASequence_set_element_pointers_allocation(pexa::any_sequence(self),              \
                                                            &(elementDescription), allocate);      \
    }                                                                                              \
    DDS_Boolean Seq##_get_element_allocation_params(const Seq* self,                               \
                                                    DDS_TypeAllocationParams_t* params) {          \
        return PEXASequence_get_element_allocation_params(pexa::any_sequence(self),                \
                                                          &(elementDescription), params);          \
    }                                                                                              \
    DDS_Boolean Seq##_set_element_allocation_params(Seq* self,                                     \
                                                    const DDS_TypeAllocationParams_t* params) {    \
        return PEXASequence_set_element_allocation_params(pexa::any_sequence(self),                \
                                                          &(elementDescription), params);          \
    }                                                                                              \
    DDS_Boolean Seq##_get_element_deallocation_params(const Seq* self,                             \
                                                      DDS_TypeDeallocationParams_t* params) {      \
        return PEXASequence_get_element_deallocation_params(pexa::any_sequence(self),              \
                                                            &(elementDescription), params);        \
    }                                                                                              \
    DDS_Boolean Seq##_set_element_deallocation_params(                                             \
        Seq* self, const DDS_TypeDeallocationParams_t* params) {                                   \
        return PEXASequence_set_element_deallocation_params(pexa::any_sequence(self),              \
                                                            &(elementDescription), params);        \
    }                                                                                              \
    DDS_Boolean Seq##_get_read_tokenI(Seq* self, void** token1, void** token2) {                   \
        return PEXASequence_get_read_tokenI(pexa::any_sequence(self), &(elementDescription),       \
                                            token1, token2);                                       \
    }                                                                                              \
    DDS_Boolean Seq##_set_read_tokenI(Seq* self, void* token1, void* token2) {                     \
        return PEXASequence_set_read_tokenI(pexa::any_sequence(self), &(elementDescription),       \
                                            token1, token2);                                       \
    }                                                                                              \
    }                                                                                              \
    static_assert(true)

#endif

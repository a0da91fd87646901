/**
 * @file sequence.h
 * @brief Sequences: one record layout, thirty operations, one implementation for all elements.
 *
 * A sequence owns its buffer or has one on loan. A record is initialised when its marker is
 * @ref DDS_SEQUENCE_MAGIC. Every operation on buffers, maximum, length or read tokens initialises a
 * record that is not, so a record of zeros is an empty sequence that owns its buffer. A sequence is
 * not thread-safe. Failures go to the middleware's log (module DDS, submodule DATA) under the full
 * name of the operation, such as "DDS_LongSeq_set_maximum".
 */
#ifndef PEXA_SEQUENCE_H
#define PEXA_SEQUENCE_H

#include "pexa/base.h"

PEXA_BEGIN_C

/** Value of the marker of an initialised sequence. */
#define DDS_SEQUENCE_MAGIC 0x7344

/** How elements are initialised. */
typedef struct DDS_TypeAllocationParams_t {
    /** Allocate what pointer members point at. */
    DDS_Boolean allocate_pointers;
    /** Allocate optional members. */
    DDS_Boolean allocate_optional_members;
    /** Allocate strings and sequence buffers. If 0, the existing ones are emptied instead. */
    DDS_Boolean allocate_memory;
} DDS_TypeAllocationParams_t;

/** How elements are finalised. */
typedef struct DDS_TypeDeallocationParams_t {
    DDS_Boolean delete_pointers;
    DDS_Boolean delete_optional_members;
} DDS_TypeDeallocationParams_t;

/** true, false, true. */
PEXA_API extern const DDS_TypeAllocationParams_t DDS_TYPE_ALLOCATION_PARAMS_DEFAULT;
/** true, true. */
PEXA_API extern const DDS_TypeDeallocationParams_t DDS_TYPE_DEALLOCATION_PARAMS_DEFAULT;

/** The layout that all sequence records share, with untyped element pointers. The attribute allows
 *  to cast a pointer to any sequence record to this type. */
typedef struct __attribute__((may_alias)) PEXASequence {
    /** Nonzero while the sequence owns its buffer, 0 while one is on loan. */
    DDS_Boolean owned;
    void* contiguousBuffer;
    /** If not NULL, this buffer of element pointers is in use instead of the contiguous one. */
    void** discontiguousBuffer;
    DDS_Long maximum;
    DDS_Long length;
    DDS_Long sequenceInit;
    /** The reader's marks of a loan. Sequences only keep them. */
    void* readToken1;
    void* readToken2;
    DDS_TypeAllocationParams_t elementAllocationParams;
    DDS_TypeDeallocationParams_t elementDeallocationParams;
} PEXASequence;

/** Describes an element type to the operations. */
typedef struct PEXASequenceElement {
    /** Name of the sequence type. It begins the context of every report. */
    const char* sequenceName;
    size_t size;
    /** Called on memory of zeros. @return 0 when an allocation failed. Then @ref finalize is called
     *  for the element and frees what was allocated before the failure. */
    DDS_Boolean (*initialize)(void* element, const DDS_TypeAllocationParams_t* params);
    void (*finalize)(void* element, const DDS_TypeDeallocationParams_t* params);
    /** @return 0 when the value does not fit. */
    DDS_Boolean (*copy)(void* destination, const void* source);
} PEXASequenceElement;

/**
 * @name The thirty operations over any element
 * The typed operations below forward to these; their contracts are stated here.
 * @{
 */
/** Makes an empty sequence that owns its buffer and has the default parameters. @return 0 for NULL,
 *  which is reported. */
PEXA_API DDS_Boolean PEXASequence_initialize(PEXASequence* self, const PEXASequenceElement* type);
/** Same as `set_maximum(self, 0)`. */
PEXA_API DDS_Boolean PEXASequence_finalize(PEXASequence* self, const PEXASequenceElement* type);
PEXA_API DDS_Long PEXASequence_get_maximum(PEXASequence* self, const PEXASequenceElement* type);
/**
 * Replaces the owned buffer by one of exactly @p maximum elements and copies as many elements as
 * fit. Initialises every element of the new buffer and finalises every element of the old one.
 * @return 0 with nothing changed: NULL, negative maximum, buffer on loan, no memory.
 */
PEXA_API DDS_Boolean PEXASequence_set_maximum(PEXASequence* self, const PEXASequenceElement* type,
                                              DDS_Long maximum);
PEXA_API DDS_Long PEXASequence_get_length(PEXASequence* self, const PEXASequenceElement* type);
/** Sets the length, from 0 to the maximum. Any other length is reported. Initialises and finalises
 * no element. */
PEXA_API DDS_Boolean PEXASequence_set_length(PEXASequence* self, const PEXASequenceElement* type,
                                             DDS_Long length);
/** Sets the length. An owned buffer that is too small grows to @p maximum before. */
PEXA_API DDS_Boolean PEXASequence_ensure_length(PEXASequence* self, const PEXASequenceElement* type,
                                                DDS_Long length, DDS_Long maximum);
/** @return the address of element @p index. An index out of range is reported and gives element 0,
 *  or NULL when there is no element. */
PEXA_API void* PEXASequence_get(PEXASequence* self, const PEXASequenceElement* type,
                                DDS_Long index);
/** @return the address of element @p index. An index out of range is reported and gives NULL. */
PEXA_API void* PEXASequence_get_reference(PEXASequence* self, const PEXASequenceElement* type,
                                          DDS_Long index);
/** Copies the elements. A destination whose maximum is below the source's length grows to the
 *  source's maximum before. @return @p self, or NULL. */
PEXA_API PEXASequence* PEXASequence_copy(PEXASequence* self, const PEXASequenceElement* type,
                                         const PEXASequence* source);
/** As copy, but never grows. A loan that is too small is reported as "not owner". */
PEXA_API DDS_Boolean PEXASequence_copy_no_alloc(PEXASequence* self, const PEXASequenceElement* type,
                                                const PEXASequence* source);
/** As copy_no_alloc, but a loan that is too small is reported as insufficient space. */
PEXA_API DDS_Boolean PEXASequence_copy_no_allocI(PEXASequence* self,
                                                 const PEXASequenceElement* type,
                                                 const PEXASequence* source);
/** Lends @p buffer to an empty sequence, which never frees it. */
PEXA_API DDS_Boolean PEXASequence_loan_contiguous(PEXASequence* self,
                                                  const PEXASequenceElement* type, void* buffer,
                                                  DDS_Long length, DDS_Long maximum);
/** Lends an array of element pointers to an empty sequence. */
PEXA_API DDS_Boolean PEXASequence_loan_discontiguous(PEXASequence* self,
                                                     const PEXASequenceElement* type,
                                                     void** pointers, DDS_Long length,
                                                     DDS_Long maximum);
/** Ends a loan; the lent memory is not touched. 0 when nothing is on loan. */
PEXA_API DDS_Boolean PEXASequence_unloan(PEXASequence* self, const PEXASequenceElement* type);
PEXA_API DDS_Boolean PEXASequence_has_ownership(PEXASequence* self,
                                                const PEXASequenceElement* type);
PEXA_API void* PEXASequence_get_contiguous_buffer(PEXASequence* self,
                                                  const PEXASequenceElement* type);
PEXA_API void** PEXASequence_get_discontiguous_buffer(PEXASequence* self,
                                                      const PEXASequenceElement* type);
/** As without the I, but for the name in the report of NULL. */
PEXA_API void* PEXASequence_get_contiguous_bufferI(PEXASequence* self,
                                                   const PEXASequenceElement* type);
/** As without the I, but for the name in the report of NULL. */
PEXA_API void** PEXASequence_get_discontiguous_bufferI(PEXASequence* self,
                                                       const PEXASequenceElement* type);
/** Copies all elements into @p array, which has @p count initialised elements. */
PEXA_API DDS_Boolean PEXASequence_to_array(PEXASequence* self, const PEXASequenceElement* type,
                                           void* array, DDS_Long count);
/** Copies @p count elements of @p array into the sequence, which grows when it is too small. */
PEXA_API DDS_Boolean PEXASequence_from_array(PEXASequence* self, const PEXASequenceElement* type,
                                             const void* array, DDS_Long count);
PEXA_API DDS_Boolean PEXASequence_get_element_pointers_allocation(const PEXASequence* self);
/** Sets both the allocate-pointers and the delete-pointers flag; only while the maximum is 0. */
PEXA_API DDS_Boolean PEXASequence_set_element_pointers_allocation(PEXASequence* self,
                                                                  const PEXASequenceElement* type,
                                                                  DDS_Boolean allocate);
PEXA_API DDS_Boolean PEXASequence_get_element_allocation_params(const PEXASequence* self,
                                                                const PEXASequenceElement* type,
                                                                DDS_TypeAllocationParams_t* params);
/** Only while the maximum is 0. */
PEXA_API DDS_Boolean PEXASequence_set_element_allocation_params(
    PEXASequence* self, const PEXASequenceElement* type, const DDS_TypeAllocationParams_t* params);
PEXA_API DDS_Boolean PEXASequence_get_element_deallocation_params(
    const PEXASequence* self, const PEXASequenceElement* type,
    DDS_TypeDeallocationParams_t* params);
PEXA_API DDS_Boolean
PEXASequence_set_element_deallocation_params(PEXASequence* self, const PEXASequenceElement* type,
                                             const DDS_TypeDeallocationParams_t* params);
PEXA_API DDS_Boolean PEXASequence_get_read_tokenI(PEXASequence* self,
                                                  const PEXASequenceElement* type, void** token1,
                                                  void** token2);
PEXA_API DDS_Boolean PEXASequence_set_read_tokenI(PEXASequence* self,
                                                  const PEXASequenceElement* type, void* token1,
                                                  void* token2);
/** @} */

/** Declares the record of a sequence of @p Element under the name @p Seq. */
#define PEXA_SEQUENCE_RECORD(Seq, Element)                      \
    typedef struct Seq {                                        \
        DDS_Boolean owned;                                      \
        Element* contiguousBuffer;                              \
        Element** discontiguousBuffer;                          \
        DDS_Long maximum;                                       \
        DDS_Long length;                                        \
        DDS_Long sequenceInit;                                  \
        void* readToken1;                                       \
        void* readToken2;                                       \
        DDS_TypeAllocationParams_t elementAllocationParams;     \
        DDS_TypeDeallocationParams_t elementDeallocationParams; \
    } Seq

/** Declares the thirty operations of sequence @p Seq of @p Element as exported by @p API. */
#define PEXA_SEQUENCE_OPERATIONS(API, Seq, Element)                                                \
    API DDS_Boolean Seq##_initialize(Seq* self);                                                   \
    API DDS_Boolean Seq##_finalize(Seq* self);                                                     \
    API DDS_Long Seq##_get_maximum(Seq* self);                                                     \
    API DDS_Boolean Seq##_set_maximum(Seq* self, DDS_Long maximum);                                \
    API DDS_Long Seq##_get_length(Seq* self);                                                      \
    API DDS_Boolean Seq##_set_length(Seq* self, DDS_Long length);                                  \
    API DDS_Boolean Seq##_ensure_length(Seq* self, DDS_Long length, DDS_Long maximum);             \
    API Element Seq##_get(Seq* self, DDS_Long index);                                              \
    API Element* Seq##_get_reference(Seq* self, DDS_Long index);                                   \
    API Seq* Seq##_copy(Seq* self, const Seq* source);                                             \
    API DDS_Boolean Seq##_copy_no_alloc(Seq* self, const Seq* source);                             \
    API DDS_Boolean Seq##_copy_no_allocI(Seq* self, const Seq* source);                            \
    API DDS_Boolean Seq##_loan_contiguous(Seq* self, Element* buffer, DDS_Long length,             \
                                          DDS_Long maximum);                                       \
    API DDS_Boolean Seq##_loan_discontiguous(Seq* self, Element** pointers, DDS_Long length,       \
                                             DDS_Long maximum);                                    \
    API DDS_Boolean Seq##_unloan(Seq* self);                                                       \
    API DDS_Boolean Seq##_has_ownership(Seq* self);                                                \
    API Element* Seq##_get_contiguous_buffer(Seq* self);                                           \
    API Element* Seq##_get_contiguous_bufferI(Seq* self);                                          \
    API Element** Seq##_get_discontiguous_buffer(Seq* self);                                       \
    API Element** Seq##_get_discontiguous_bufferI(Seq* self);                                      \
    API DDS_Boolean Seq##_to_array(Seq* self, Element* array, DDS_Long count);                     \
    API DDS_Boolean Seq##_from_array(Seq* self, Element const* array, DDS_Long count);             \
    API DDS_Boolean Seq##_get_element_pointers_allocation(const Seq* self);                        \
    API DDS_Boolean Seq##_set_element_pointers_allocation(Seq* self, DDS_Boolean allocate);        \
    API DDS_Boolean Seq##_get_element_allocation_params(const Seq* self,                           \
                                                        DDS_TypeAllocationParams_t* params);       \
    API DDS_Boolean Seq##_set_element_allocation_params(Seq* self,                                 \
                                                        const DDS_TypeAllocationParams_t* params); \
    API DDS_Boolean Seq##_get_element_deallocation_params(const Seq* self,                         \
                                                          DDS_TypeDeallocationParams_t* params);   \
    API DDS_Boolean Seq##_set_element_deallocation_params(                                         \
        Seq* self, const DDS_TypeDeallocationParams_t* params);                                    \
    API DDS_Boolean Seq##_get_read_tokenI(Seq* self, void** token1, void** token2);                \
    API DDS_Boolean Seq##_set_read_tokenI(Seq* self, void* token1, void* token2)

/**
 * @name The standard sequences
 * A DDS_StringSeq owns its strings. They come from the heap and are freed with the sequence. A new
 * element is an empty string, or NULL when the allocation parameters exclude memory. Replace a
 * string with @ref DDS_String_replace: an assignment would leak the old one. A copy duplicates the
 * strings; NULL is copied as NULL.
 * @{
 */
PEXA_SEQUENCE_RECORD(DDS_OctetSeq, DDS_Octet);
PEXA_SEQUENCE_RECORD(DDS_LongSeq, DDS_Long);
PEXA_SEQUENCE_RECORD(DDS_StringSeq, char*);
PEXA_SEQUENCE_RECORD(DDS_InstanceHandleSeq, DDS_InstanceHandle_t);
PEXA_SEQUENCE_OPERATIONS(PEXA_API, DDS_OctetSeq, DDS_Octet);
PEXA_SEQUENCE_OPERATIONS(PEXA_API, DDS_LongSeq, DDS_Long);
PEXA_SEQUENCE_OPERATIONS(PEXA_API, DDS_StringSeq, char*);
PEXA_SEQUENCE_OPERATIONS(PEXA_API, DDS_InstanceHandleSeq, DDS_InstanceHandle_t);
/** @} */

PEXA_END_C

#endif

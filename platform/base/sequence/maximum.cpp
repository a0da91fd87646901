#include <algorithm>

#include "pexa/osapi.h"
#include "pexa/sequence.h"
#include "platform/base/sequence/operation.hpp"
#include "platform/base/sequence/record.hpp"

using pexa::base::element_at;
using pexa::base::is_usable;
using pexa::base::SequenceOperation;

namespace {

void finalize_elements(const PEXASequence& sequence, const PEXASequenceElement& type,
                       DDS_Long count) {
    for (DDS_Long index = 0; index < count; ++index) {
        type.finalize(element_at(sequence, type, index), &sequence.elementDeallocationParams);
    }
}

// Frees an owned buffer, of which the first elements have been given to the initialisation.
void free_buffer(PEXASequence& sequence, const PEXASequenceElement& type, DDS_Long initialized) {
    if (sequence.contiguousBuffer != nullptr) {
        finalize_elements(sequence, type, initialized);
        QELOsapiHeap_freeArray(sequence.contiguousBuffer);
    }
}

DDS_Long initialize_elements(const PEXASequence& sequence, const PEXASequenceElement& type) {
    DDS_Long done = 0;
    while (done < sequence.maximum && type.initialize(element_at(sequence, type, done),
                                                      &sequence.elementAllocationParams) != 0) {
        ++done;
    }
    return done;
}

bool copy_elements(const PEXASequence& destination, const PEXASequence& source,
                   const PEXASequenceElement& type) {
    for (DDS_Long index = 0; index < destination.length; ++index) {
        if (type.copy(element_at(destination, type, index), element_at(source, type, index)) == 0) {
            return false;
        }
    }
    return true;
}

// Gives an empty sequence a buffer of its maximum, initialised throughout.
bool make_buffer(PEXASequence& sequence, const PEXASequenceElement& type,
                 const SequenceOperation& operation) {
    sequence.contiguousBuffer =
        QELOsapiHeap_allocateArrayOfSize(static_cast<size_t>(sequence.maximum), type.size);
    if (sequence.contiguousBuffer == nullptr) {
        return operation.no_memory(sequence.maximum) != 0;
    }
    const DDS_Long initialized = initialize_elements(sequence, type);
    if (initialized < sequence.maximum) {
        // The element that failed may hold part of what it needs.
        free_buffer(sequence, type, initialized + 1);
        return operation.failure("initialization of an element") != 0;
    }
    return true;
}

}  // namespace

DDS_Boolean PEXASequence_set_maximum(PEXASequence* self, const PEXASequenceElement* type,
                                     DDS_Long maximum) {
    const SequenceOperation operation(type, "set_maximum");
    if (!is_usable(self, operation)) {
        return DDS_BOOLEAN_FALSE;
    }
    if (maximum < 0) {
        return operation.violated("max size must be positive");
    }
    if (self->owned == 0) {
        return operation.violated("buffer must not be loaned");
    }
    if (maximum == self->maximum) {
        return DDS_BOOLEAN_TRUE;
    }
    PEXASequence resized = *self;
    resized.contiguousBuffer = nullptr;
    resized.maximum = maximum;
    resized.length = std::min(maximum, self->length);
    if (maximum > 0 && !make_buffer(resized, *type, operation)) {
        return DDS_BOOLEAN_FALSE;
    }
    if (!copy_elements(resized, *self, *type)) {
        free_buffer(resized, *type, resized.maximum);
        return operation.failure("copy of an element");
    }
    free_buffer(*self, *type, self->maximum);
    *self = resized;
    return DDS_BOOLEAN_TRUE;
}

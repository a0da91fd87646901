#include <algorithm>

#include "pexa/osapi.h"
#include "platform/base/result.hpp"
#include "platform/base/sequence/operation.hpp"
#include "platform/base/sequence/record.hpp"
#include "platform/base/sequence/sequence.hpp"

namespace pexa::base {

namespace {

void finalize_elements(const PEXASequence& sequence, const PEXASequenceElement& type,
                       DDS_Long count) {
    for (DDS_Long index = 0; index < count; ++index) {
        type.finalize(element_at(sequence, type, index), &sequence.elementDeallocationParams);
    }
}

// Frees an owned buffer. The first elements are finalised before.
void free_buffer(PEXASequence& sequence, const PEXASequenceElement& type, DDS_Long initialized) {
    if (sequence.contiguousBuffer != nullptr) {
        finalize_elements(sequence, type, initialized);
        QELOsapiHeap_freeArray(sequence.contiguousBuffer);
    }
}

// Returns the number of elements that could be initialised.
DDS_Long initialize_elements(const PEXASequence& sequence, const PEXASequenceElement& type) {
    DDS_Long done = 0;
    while (done < sequence.maximum && type.initialize(element_at(sequence, type, done),
                                                      &sequence.elementAllocationParams) != 0) {
        ++done;
    }
    return done;
}

Status copy_elements(const PEXASequence& destination, const PEXASequence& source,
                     const PEXASequenceElement& type) {
    for (DDS_Long index = 0; index < destination.length; ++index) {
        if (type.copy(element_at(destination, type, index), element_at(source, type, index)) == 0) {
            return Status::error;
        }
    }
    return Status::ok;
}

// Gives an empty sequence a buffer of its maximum, with all elements initialised.
Status make_buffer(PEXASequence& sequence, const PEXASequenceElement& type,
                   const SequenceOperation& operation) {
    sequence.contiguousBuffer =
        QELOsapiHeap_allocateArrayOfSize(static_cast<size_t>(sequence.maximum), type.size);
    if (sequence.contiguousBuffer == nullptr) {
        return operation.no_memory(sequence.maximum);
    }
    const DDS_Long initialized = initialize_elements(sequence, type);
    if (initialized < sequence.maximum) {
        // The element that failed may own memory, too.
        free_buffer(sequence, type, initialized + 1);
        return operation.failure("initialization of an element");
    }
    return Status::ok;
}

Status resize(PEXASequence& sequence, const PEXASequenceElement& type,
              const SequenceOperation& operation, DDS_Long maximum) {
    PEXASequence resized = sequence;
    resized.contiguousBuffer = nullptr;
    resized.maximum = maximum;
    resized.length = std::min(maximum, sequence.length);
    if (maximum > 0) {
        const Status made = make_buffer(resized, type, operation);
        if (made != Status::ok) {
            return made;
        }
    }
    if (copy_elements(resized, sequence, type) != Status::ok) {
        free_buffer(resized, type, resized.maximum);
        return operation.failure("copy of an element");
    }
    free_buffer(sequence, type, sequence.maximum);
    sequence = resized;
    return Status::ok;
}

}  // namespace

Status set_maximum(PEXASequence* self, const PEXASequenceElement* type, DDS_Long maximum) {
    const SequenceOperation operation(type, "set_maximum");
    const Status prepared = prepare(self, operation);
    if (prepared != Status::ok) {
        return prepared;
    }
    if (maximum < 0) {
        return operation.violated("max size must be positive");
    }
    if (self->owned == 0) {
        return operation.violated("buffer must not be loaned");
    }
    return maximum == self->maximum ? Status::ok : resize(*self, *type, operation, maximum);
}

}  // namespace pexa::base

DDS_Boolean PEXASequence_set_maximum(PEXASequence* self, const PEXASequenceElement* type,
                                     DDS_Long maximum) {
    return pexa::base::to_boolean(pexa::base::set_maximum(self, type, maximum));
}

DDS_Boolean PEXASequence_finalize(PEXASequence* self, const PEXASequenceElement* type) {
    return pexa::base::to_boolean(pexa::base::set_maximum(self, type, 0));
}

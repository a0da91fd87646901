#include "pexa/sequence.h"

#include "platform/base/sequence/operation.hpp"
#include "platform/base/sequence/record.hpp"

using pexa::base::element_at;
using pexa::base::is_usable;
using pexa::base::SequenceOperation;

namespace {

bool accepts_loan(PEXASequence* self, const SequenceOperation& operation, const void* buffer,
                  DDS_Long length, DDS_Long maximum) {
    if (!is_usable(self, operation)) {
        return false;
    }
    if (self->maximum != 0) {
        return operation.violated("max size must be 0") != 0;
    }
    if (length < 0 || maximum < 0) {
        return operation.violated("negative argument") != 0;
    }
    if (length > maximum) {
        return operation.insufficient_space(maximum, length) != 0;
    }
    if (maximum > 0 && buffer == nullptr) {
        return operation.violated("NULL buffer can't have non-zero maximum") != 0;
    }
    return true;
}

void lend(PEXASequence* self, void* contiguous, void** discontiguous, DDS_Long length,
          DDS_Long maximum) {
    self->owned = DDS_BOOLEAN_FALSE;
    self->contiguousBuffer = contiguous;
    self->discontiguousBuffer = discontiguous;
    self->length = length;
    self->maximum = maximum;
}

}  // namespace

DDS_Boolean PEXASequence_initialize(PEXASequence* self, const PEXASequenceElement* type) {
    if (self == nullptr) {
        return SequenceOperation(type, "initialize").bad_parameter("self");
    }
    *self = pexa::base::empty_sequence();
    return DDS_BOOLEAN_TRUE;
}

DDS_Boolean PEXASequence_finalize(PEXASequence* self, const PEXASequenceElement* type) {
    return PEXASequence_set_maximum(self, type, 0);
}

DDS_Long PEXASequence_get_maximum(PEXASequence* self, const PEXASequenceElement* type) {
    return is_usable(self, {type, "get_maximum"}) ? self->maximum : 0;
}

DDS_Long PEXASequence_get_length(PEXASequence* self, const PEXASequenceElement* type) {
    return is_usable(self, {type, "get_length"}) ? self->length : 0;
}

DDS_Boolean PEXASequence_set_length(PEXASequence* self, const PEXASequenceElement* type,
                                    DDS_Long length) {
    const SequenceOperation operation(type, "set_length");
    if (!is_usable(self, operation)) {
        return DDS_BOOLEAN_FALSE;
    }
    if (length < 0 || length > self->maximum) {
        return operation.insufficient_space(self->maximum, length);
    }
    self->length = length;
    return DDS_BOOLEAN_TRUE;
}

DDS_Boolean PEXASequence_ensure_length(PEXASequence* self, const PEXASequenceElement* type,
                                       DDS_Long length, DDS_Long maximum) {
    const SequenceOperation operation(type, "ensure_length");
    if (!is_usable(self, operation)) {
        return DDS_BOOLEAN_FALSE;
    }
    if (length > maximum) {
        return operation.insufficient_space(length, maximum);
    }
    if (length > self->maximum) {
        if (self->owned == 0) {
            return operation.not_owner();
        }
        operation.allocates(self->maximum, maximum);
        if (PEXASequence_set_maximum(self, type, maximum) == 0) {
            return operation.insufficient_space(self->maximum, maximum);
        }
    }
    if (PEXASequence_set_length(self, type, length) == 0) {
        return operation.set_failure("length");
    }
    return DDS_BOOLEAN_TRUE;
}

void* PEXASequence_get(PEXASequence* self, const PEXASequenceElement* type, DDS_Long index) {
    const SequenceOperation operation(type, "get");
    if (!is_usable(self, operation)) {
        return nullptr;
    }
    if (index >= 0 && index < self->length) {
        return element_at(*self, *type, index);
    }
    operation.violated("index out of bounds");
    // Pointers behind the length need not be set, whereas contiguous elements are there up to the
    // maximum.
    const DDS_Long present = self->discontiguousBuffer != nullptr ? self->length : self->maximum;
    return present > 0 ? element_at(*self, *type, 0) : nullptr;
}

void* PEXASequence_get_reference(PEXASequence* self, const PEXASequenceElement* type,
                                 DDS_Long index) {
    const SequenceOperation operation(type, "get_reference");
    if (!is_usable(self, operation)) {
        return nullptr;
    }
    if (index < 0 || index >= self->length) {
        operation.violated("index out of bounds");
        return nullptr;
    }
    return element_at(*self, *type, index);
}

DDS_Boolean PEXASequence_loan_contiguous(PEXASequence* self, const PEXASequenceElement* type,
                                         void* buffer, DDS_Long length, DDS_Long maximum) {
    if (!accepts_loan(self, {type, "loan_contiguous"}, buffer, length, maximum)) {
        return DDS_BOOLEAN_FALSE;
    }
    lend(self, buffer, nullptr, length, maximum);
    return DDS_BOOLEAN_TRUE;
}

DDS_Boolean PEXASequence_loan_discontiguous(PEXASequence* self, const PEXASequenceElement* type,
                                            void** pointers, DDS_Long length, DDS_Long maximum) {
    if (!accepts_loan(self, {type, "loan_discontiguous"}, pointers, length, maximum)) {
        return DDS_BOOLEAN_FALSE;
    }
    lend(self, nullptr, pointers, length, maximum);
    return DDS_BOOLEAN_TRUE;
}

DDS_Boolean PEXASequence_unloan(PEXASequence* self, const PEXASequenceElement* type) {
    const SequenceOperation operation(type, "unloan");
    if (!is_usable(self, operation)) {
        return DDS_BOOLEAN_FALSE;
    }
    if (self->owned != 0) {
        return operation.violated("buffer must be loaned");
    }
    lend(self, nullptr, nullptr, 0, 0);
    self->owned = DDS_BOOLEAN_TRUE;
    return DDS_BOOLEAN_TRUE;
}

DDS_Boolean PEXASequence_has_ownership(PEXASequence* self, const PEXASequenceElement* type) {
    return is_usable(self, {type, "has_ownership"}) ? self->owned : DDS_BOOLEAN_FALSE;
}

void* PEXASequence_get_contiguous_buffer(PEXASequence* self, const PEXASequenceElement* type) {
    return is_usable(self, {type, "get_contiguous_buffer"}) ? self->contiguousBuffer : nullptr;
}

void** PEXASequence_get_discontiguous_buffer(PEXASequence* self, const PEXASequenceElement* type) {
    return is_usable(self, {type, "get_discontiguous_buffer"}) ? self->discontiguousBuffer
                                                               : nullptr;
}

DDS_Boolean PEXASequence_get_read_tokenI(PEXASequence* self, const PEXASequenceElement* type,
                                         void** token1, void** token2) {
    const SequenceOperation operation(type, "get_read_tokenI");
    if (!is_usable(self, operation)) {
        return DDS_BOOLEAN_FALSE;
    }
    if (token1 == nullptr || token2 == nullptr) {
        return operation.get_failure("token (NULL)");
    }
    *token1 = self->readToken1;
    *token2 = self->readToken2;
    return DDS_BOOLEAN_TRUE;
}

DDS_Boolean PEXASequence_set_read_tokenI(PEXASequence* self, const PEXASequenceElement* type,
                                         void* token1, void* token2) {
    if (!is_usable(self, {type, "set_read_tokenI"})) {
        return DDS_BOOLEAN_FALSE;
    }
    self->readToken1 = token1;
    self->readToken2 = token2;
    return DDS_BOOLEAN_TRUE;
}

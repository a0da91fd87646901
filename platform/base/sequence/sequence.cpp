#include "platform/base/sequence/sequence.hpp"

#include "platform/base/result.hpp"
#include "platform/base/sequence/operation.hpp"
#include "platform/base/sequence/record.hpp"

namespace pexa::base {

namespace {

void lend(PEXASequence* self, void* contiguous, void** discontiguous, DDS_Long length,
          DDS_Long maximum) {
    self->owned = DDS_BOOLEAN_FALSE;
    self->contiguousBuffer = contiguous;
    self->discontiguousBuffer = discontiguous;
    self->length = length;
    self->maximum = maximum;
}

Status check_loan(PEXASequence* self, const SequenceOperation& operation, const void* buffer,
                  DDS_Long length, DDS_Long maximum) {
    const Status prepared = prepare(self, operation);
    if (prepared != Status::ok) {
        return prepared;
    }
    if (self->maximum != 0) {
        return operation.violated("max size must be 0");
    }
    if (length < 0 || maximum < 0) {
        return operation.violated("negative argument");
    }
    if (length > maximum) {
        return operation.insufficient_space(maximum, length);
    }
    if (maximum > 0 && buffer == nullptr) {
        return operation.violated("NULL buffer can't have non-zero maximum");
    }
    return Status::ok;
}

Status loan_discontiguous(PEXASequence* self, const PEXASequenceElement* type, void** pointers,
                          DDS_Long length, DDS_Long maximum) {
    const Status checked =
        check_loan(self, {type, "loan_discontiguous"}, pointers, length, maximum);
    if (checked == Status::ok) {
        lend(self, nullptr, pointers, length, maximum);
    }
    return checked;
}

Status initialize(PEXASequence* self, const PEXASequenceElement* type) {
    if (self == nullptr) {
        return SequenceOperation(type, "initialize").bad_parameter("self");
    }
    *self = empty_sequence();
    return Status::ok;
}

// A member of the record, or zero for NULL, which is reported.
template <class Value>
Value value_of(Value PEXASequence::*member, PEXASequence* self,
               const SequenceOperation& operation) {
    return prepare(self, operation) == Status::ok ? self->*member : Value();
}

Status ensure_length(PEXASequence* self, const PEXASequenceElement* type, DDS_Long length,
                     DDS_Long maximum) {
    const SequenceOperation operation(type, "ensure_length");
    const Status prepared = prepare(self, operation);
    if (prepared != Status::ok) {
        return prepared;
    }
    if (length > maximum) {
        return operation.insufficient_space(length, maximum);
    }
    if (length > self->maximum) {
        if (self->owned == 0) {
            return operation.not_owner();
        }
        operation.allocates(self->maximum, maximum);
        if (set_maximum(self, type, maximum) != Status::ok) {
            return operation.insufficient_space(self->maximum, maximum);
        }
    }
    return set_length(self, type, length) == Status::ok ? Status::ok
                                                        : operation.set_failure("length");
}

bool is_within(const PEXASequence& sequence, DDS_Long index) {
    return index >= 0 && index < sequence.length;
}

// The report is the only consequence of a bad index.
void report_index(const SequenceOperation& operation) {
    static_cast<void>(operation.violated("index out of bounds"));
}

void* get(PEXASequence* self, const PEXASequenceElement* type, DDS_Long index) {
    const SequenceOperation operation(type, "get");
    if (prepare(self, operation) != Status::ok) {
        return nullptr;
    }
    if (is_within(*self, index)) {
        return element_at(*self, *type, index);
    }
    report_index(operation);
    // Pointers behind the length need not be set. Contiguous elements exist up to the maximum.
    const DDS_Long present = self->discontiguousBuffer != nullptr ? self->length : self->maximum;
    return present > 0 ? element_at(*self, *type, 0) : nullptr;
}

void* get_reference(PEXASequence* self, const PEXASequenceElement* type, DDS_Long index) {
    const SequenceOperation operation(type, "get_reference");
    if (prepare(self, operation) != Status::ok) {
        return nullptr;
    }
    if (!is_within(*self, index)) {
        report_index(operation);
        return nullptr;
    }
    return element_at(*self, *type, index);
}

Status get_read_tokens(PEXASequence* self, const PEXASequenceElement* type, void** token1,
                       void** token2) {
    const SequenceOperation operation(type, "get_read_tokenI");
    const Status prepared = prepare(self, operation);
    if (prepared != Status::ok) {
        return prepared;
    }
    if (token1 == nullptr || token2 == nullptr) {
        return operation.get_failure("token (NULL)");
    }
    *token1 = self->readToken1;
    *token2 = self->readToken2;
    return Status::ok;
}

Status set_read_tokens(PEXASequence* self, const PEXASequenceElement* type, void* token1,
                       void* token2) {
    const Status prepared = prepare(self, {type, "set_read_tokenI"});
    if (prepared == Status::ok) {
        self->readToken1 = token1;
        self->readToken2 = token2;
    }
    return prepared;
}

}  // namespace

Status set_length(PEXASequence* self, const PEXASequenceElement* type, DDS_Long length) {
    const SequenceOperation operation(type, "set_length");
    const Status prepared = prepare(self, operation);
    if (prepared != Status::ok) {
        return prepared;
    }
    if (length < 0 || length > self->maximum) {
        return operation.insufficient_space(self->maximum, length);
    }
    self->length = length;
    return Status::ok;
}

Status loan_contiguous(PEXASequence* self, const PEXASequenceElement* type, void* buffer,
                       DDS_Long length, DDS_Long maximum) {
    const Status checked = check_loan(self, {type, "loan_contiguous"}, buffer, length, maximum);
    if (checked == Status::ok) {
        lend(self, buffer, nullptr, length, maximum);
    }
    return checked;
}

Status unloan(PEXASequence* self, const PEXASequenceElement* type) {
    const SequenceOperation operation(type, "unloan");
    const Status prepared = prepare(self, operation);
    if (prepared != Status::ok) {
        return prepared;
    }
    if (self->owned != 0) {
        return operation.violated("buffer must be loaned");
    }
    lend(self, nullptr, nullptr, 0, 0);
    self->owned = DDS_BOOLEAN_TRUE;
    return Status::ok;
}

}  // namespace pexa::base

using pexa::base::to_boolean;
using pexa::base::value_of;

DDS_Boolean PEXASequence_initialize(PEXASequence* self, const PEXASequenceElement* type) {
    return to_boolean(pexa::base::initialize(self, type));
}

DDS_Long PEXASequence_get_maximum(PEXASequence* self, const PEXASequenceElement* type) {
    return value_of(&PEXASequence::maximum, self, {type, "get_maximum"});
}

DDS_Long PEXASequence_get_length(PEXASequence* self, const PEXASequenceElement* type) {
    return value_of(&PEXASequence::length, self, {type, "get_length"});
}

DDS_Boolean PEXASequence_set_length(PEXASequence* self, const PEXASequenceElement* type,
                                    DDS_Long length) {
    return to_boolean(pexa::base::set_length(self, type, length));
}

DDS_Boolean PEXASequence_ensure_length(PEXASequence* self, const PEXASequenceElement* type,
                                       DDS_Long length, DDS_Long maximum) {
    return to_boolean(pexa::base::ensure_length(self, type, length, maximum));
}

void* PEXASequence_get(PEXASequence* self, const PEXASequenceElement* type, DDS_Long index) {
    return pexa::base::get(self, type, index);
}

void* PEXASequence_get_reference(PEXASequence* self, const PEXASequenceElement* type,
                                 DDS_Long index) {
    return pexa::base::get_reference(self, type, index);
}

DDS_Boolean PEXASequence_loan_contiguous(PEXASequence* self, const PEXASequenceElement* type,
                                         void* buffer, DDS_Long length, DDS_Long maximum) {
    return to_boolean(pexa::base::loan_contiguous(self, type, buffer, length, maximum));
}

DDS_Boolean PEXASequence_loan_discontiguous(PEXASequence* self, const PEXASequenceElement* type,
                                            void** pointers, DDS_Long length, DDS_Long maximum) {
    return to_boolean(pexa::base::loan_discontiguous(self, type, pointers, length, maximum));
}

DDS_Boolean PEXASequence_unloan(PEXASequence* self, const PEXASequenceElement* type) {
    return to_boolean(pexa::base::unloan(self, type));
}

DDS_Boolean PEXASequence_has_ownership(PEXASequence* self, const PEXASequenceElement* type) {
    return value_of(&PEXASequence::owned, self, {type, "has_ownership"});
}

void* PEXASequence_get_contiguous_buffer(PEXASequence* self, const PEXASequenceElement* type) {
    return value_of(&PEXASequence::contiguousBuffer, self, {type, "get_contiguous_buffer"});
}

void** PEXASequence_get_discontiguous_buffer(PEXASequence* self, const PEXASequenceElement* type) {
    return value_of(&PEXASequence::discontiguousBuffer, self, {type, "get_discontiguous_buffer"});
}

void* PEXASequence_get_contiguous_bufferI(PEXASequence* self, const PEXASequenceElement* type) {
    return value_of(&PEXASequence::contiguousBuffer, self, {type, "get_contiguous_bufferI"});
}

void** PEXASequence_get_discontiguous_bufferI(PEXASequence* self, const PEXASequenceElement* type) {
    return value_of(&PEXASequence::discontiguousBuffer, self, {type, "get_discontiguous_bufferI"});
}

DDS_Boolean PEXASequence_get_read_tokenI(PEXASequence* self, const PEXASequenceElement* type,
                                         void** token1, void** token2) {
    return to_boolean(pexa::base::get_read_tokens(self, type, token1, token2));
}

DDS_Boolean PEXASequence_set_read_tokenI(PEXASequence* self, const PEXASequenceElement* type,
                                         void* token1, void* token2) {
    return to_boolean(pexa::base::set_read_tokens(self, type, token1, token2));
}

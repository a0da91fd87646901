#include "pexa/sequence.h"
#include "platform/base/sequence/operation.hpp"
#include "platform/base/sequence/record.hpp"

using pexa::base::element_at;
using pexa::base::is_usable;
using pexa::base::SequenceOperation;

namespace {

// A source is not changed, so one that has never been initialised is only taken for empty.
DDS_Long length_of(const PEXASequence& source) {
    return source.sequenceInit == DDS_SEQUENCE_MAGIC ? source.length : 0;
}

bool are_usable(PEXASequence* self, const PEXASequence* source,
                const SequenceOperation& operation) {
    return is_usable(self, operation) && (source != nullptr || operation.bad_parameter("src") != 0);
}

// Makes an array look like a full sequence for the time of one copy.
class ArrayAsSequence {
public:
    ArrayAsSequence(const PEXASequenceElement* type, const SequenceOperation& operation)
        : type_(type), operation_(operation) {}

    [[nodiscard]] bool loan(void* array, DDS_Long count) {
        return PEXASequence_loan_contiguous(&sequence_, type_, array, count, count) != 0 ||
               operation_.violated("loan contiguous array") != 0;
    }
    [[nodiscard]] bool unloan() {
        return PEXASequence_unloan(&sequence_, type_) != 0 ||
               operation_.violated("unloan contiguous array") != 0;
    }
    [[nodiscard]] PEXASequence* get() { return &sequence_; }

private:
    const PEXASequenceElement* type_;
    const SequenceOperation& operation_;
    PEXASequence sequence_ = pexa::base::empty_sequence();
};

}  // namespace

PEXASequence* PEXASequence_copy(PEXASequence* self, const PEXASequenceElement* type,
                                const PEXASequence* source) {
    if (!are_usable(self, source, {type, "copy"})) {
        return nullptr;
    }
    if (self->maximum < length_of(*source) &&
        PEXASequence_set_maximum(self, type, source->maximum) == 0) {
        return nullptr;
    }
    return PEXASequence_copy_no_alloc(self, type, source) != 0 ? self : nullptr;
}

DDS_Boolean PEXASequence_copy_no_alloc(PEXASequence* self, const PEXASequenceElement* type,
                                       const PEXASequence* source) {
    const SequenceOperation operation(type, "copy_no_alloc");
    if (!are_usable(self, source, operation)) {
        return DDS_BOOLEAN_FALSE;
    }
    if (self->owned == 0 && length_of(*source) > self->maximum) {
        return operation.not_owner();
    }
    return PEXASequence_copy_no_allocI(self, type, source);
}

DDS_Boolean PEXASequence_copy_no_allocI(PEXASequence* self, const PEXASequenceElement* type,
                                        const PEXASequence* source) {
    const SequenceOperation operation(type, "copy_no_allocI");
    if (!are_usable(self, source, operation)) {
        return DDS_BOOLEAN_FALSE;
    }
    if (self == source) {
        return DDS_BOOLEAN_TRUE;
    }
    const DDS_Long length = length_of(*source);
    if (PEXASequence_set_length(self, type, length) == 0) {
        return operation.insufficient_space(self->maximum, length);
    }
    for (DDS_Long index = 0; index < length; ++index) {
        if (type->copy(element_at(*self, *type, index), element_at(*source, *type, index)) == 0) {
            return operation.failure("copy of an element");
        }
    }
    return DDS_BOOLEAN_TRUE;
}

DDS_Boolean PEXASequence_to_array(PEXASequence* self, const PEXASequenceElement* type, void* array,
                                  DDS_Long count) {
    const SequenceOperation operation(type, "to_array");
    ArrayAsSequence target(type, operation);
    if (!is_usable(self, operation) || !target.loan(array, count)) {
        return DDS_BOOLEAN_FALSE;
    }
    if (PEXASequence_copy_no_allocI(target.get(), type, self) == 0) {
        return operation.violated("copying array sequence");
    }
    return target.unloan() ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
}

DDS_Boolean PEXASequence_from_array(PEXASequence* self, const PEXASequenceElement* type,
                                    const void* array, DDS_Long count) {
    const SequenceOperation operation(type, "from_array");
    ArrayAsSequence source(type, operation);
    // The loan is only read.
    if (!is_usable(self, operation) || !source.loan(const_cast<void*>(array), count)) {
        return DDS_BOOLEAN_FALSE;
    }
    if (PEXASequence_copy(self, type, source.get()) == nullptr) {
        return operation.violated("copying array sequence");
    }
    return source.unloan() ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
}

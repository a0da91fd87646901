#include "platform/base/result.hpp"
#include "platform/base/sequence/operation.hpp"
#include "platform/base/sequence/record.hpp"
#include "platform/base/sequence/sequence.hpp"

namespace pexa::base {

namespace {

// A source is not changed, so one that has never been initialised counts as empty.
DDS_Long length_of(const PEXASequence& source) {
    return source.sequenceInit == DDS_SEQUENCE_MAGIC ? source.length : 0;
}

Status prepare_both(PEXASequence* self, const PEXASequence* source,
                    const SequenceOperation& operation) {
    const Status prepared = prepare(self, operation);
    return prepared == Status::ok && source == nullptr ? operation.bad_parameter("src") : prepared;
}

Status copy_no_alloc_internal(PEXASequence* self, const PEXASequenceElement* type,
                              const PEXASequence* source) {
    const SequenceOperation operation(type, "copy_no_allocI");
    const Status prepared = prepare_both(self, source, operation);
    if (prepared != Status::ok || self == source) {
        return prepared;
    }
    const DDS_Long length = length_of(*source);
    if (set_length(self, type, length) != Status::ok) {
        return operation.insufficient_space(self->maximum, length);
    }
    for (DDS_Long index = 0; index < length; ++index) {
        if (type->copy(element_at(*self, *type, index), element_at(*source, *type, index)) == 0) {
            return operation.failure("copy of an element");
        }
    }
    return Status::ok;
}

Status copy_no_alloc(PEXASequence* self, const PEXASequenceElement* type,
                     const PEXASequence* source) {
    const SequenceOperation operation(type, "copy_no_alloc");
    const Status prepared = prepare_both(self, source, operation);
    if (prepared != Status::ok) {
        return prepared;
    }
    if (self->owned == 0 && length_of(*source) > self->maximum) {
        return operation.not_owner();
    }
    return copy_no_alloc_internal(self, type, source);
}

Status copy(PEXASequence* self, const PEXASequenceElement* type, const PEXASequence* source) {
    const Status prepared = prepare_both(self, source, {type, "copy"});
    if (prepared != Status::ok) {
        return prepared;
    }
    if (self->maximum < length_of(*source)) {
        const Status grown = set_maximum(self, type, source->maximum);
        if (grown != Status::ok) {
            return grown;
        }
    }
    return copy_no_alloc(self, type, source);
}

// Makes an array look like a full sequence for the time of one copy.
class ArrayAsSequence {
public:
    ArrayAsSequence(const PEXASequenceElement* type, const SequenceOperation& operation)
        : type_(type), operation_(operation) {}

    Status loan(void* array, DDS_Long count) {
        return loan_contiguous(&sequence_, type_, array, count, count) == Status::ok
                   ? Status::ok
                   : operation_.violated("loan contiguous array");
    }
    Status unloan() {
        return base::unloan(&sequence_, type_) == Status::ok
                   ? Status::ok
                   : operation_.violated("unloan contiguous array");
    }
    PEXASequence* get() { return &sequence_; }

private:
    const PEXASequenceElement* type_;
    const SequenceOperation& operation_;
    PEXASequence sequence_ = empty_sequence();
};

Status to_array(PEXASequence* self, const PEXASequenceElement* type, void* array, DDS_Long count) {
    const SequenceOperation operation(type, "to_array");
    ArrayAsSequence target(type, operation);
    Status result = prepare(self, operation);
    if (result == Status::ok) {
        result = target.loan(array, count);
    }
    if (result != Status::ok) {
        return result;
    }
    return copy_no_alloc_internal(target.get(), type, self) == Status::ok
               ? target.unloan()
               : operation.violated("copying array sequence");
}

Status from_array(PEXASequence* self, const PEXASequenceElement* type, const void* array,
                  DDS_Long count) {
    const SequenceOperation operation(type, "from_array");
    ArrayAsSequence source(type, operation);
    Status result = prepare(self, operation);
    if (result == Status::ok) {
        // The loan is only read.
        result = source.loan(const_cast<void*>(array), count);
    }
    if (result != Status::ok) {
        return result;
    }
    return copy(self, type, source.get()) == Status::ok
               ? source.unloan()
               : operation.violated("copying array sequence");
}

}  // namespace

}  // namespace pexa::base

PEXASequence* PEXASequence_copy(PEXASequence* self, const PEXASequenceElement* type,
                                const PEXASequence* source) {
    return pexa::base::copy(self, type, source) == pexa::Status::ok ? self : nullptr;
}

DDS_Boolean PEXASequence_copy_no_alloc(PEXASequence* self, const PEXASequenceElement* type,
                                       const PEXASequence* source) {
    return pexa::base::to_boolean(pexa::base::copy_no_alloc(self, type, source));
}

DDS_Boolean PEXASequence_copy_no_allocI(PEXASequence* self, const PEXASequenceElement* type,
                                        const PEXASequence* source) {
    return pexa::base::to_boolean(pexa::base::copy_no_alloc_internal(self, type, source));
}

DDS_Boolean PEXASequence_to_array(PEXASequence* self, const PEXASequenceElement* type, void* array,
                                  DDS_Long count) {
    return pexa::base::to_boolean(pexa::base::to_array(self, type, array, count));
}

DDS_Boolean PEXASequence_from_array(PEXASequence* self, const PEXASequenceElement* type,
                                    const void* array, DDS_Long count) {
    return pexa::base::to_boolean(pexa::base::from_array(self, type, array, count));
}

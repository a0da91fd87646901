#include "platform/base/sequence/record.hpp"

const DDS_TypeAllocationParams_t DDS_TYPE_ALLOCATION_PARAMS_DEFAULT = {
    DDS_BOOLEAN_TRUE, DDS_BOOLEAN_FALSE, DDS_BOOLEAN_TRUE};
const DDS_TypeDeallocationParams_t DDS_TYPE_DEALLOCATION_PARAMS_DEFAULT = {DDS_BOOLEAN_TRUE,
                                                                           DDS_BOOLEAN_TRUE};

namespace pexa::base {

PEXASequence empty_sequence() {
    PEXASequence empty{};
    empty.owned = DDS_BOOLEAN_TRUE;
    empty.sequenceInit = DDS_SEQUENCE_MAGIC;
    empty.elementAllocationParams = DDS_TYPE_ALLOCATION_PARAMS_DEFAULT;
    empty.elementDeallocationParams = DDS_TYPE_DEALLOCATION_PARAMS_DEFAULT;
    return empty;
}

Status prepare(PEXASequence* self, const SequenceOperation& operation) {
    if (self == nullptr) {
        return operation.bad_parameter("self");
    }
    if (self->sequenceInit != DDS_SEQUENCE_MAGIC) {
        *self = empty_sequence();
    }
    return Status::ok;
}

void* element_at(const PEXASequence& self, const PEXASequenceElement& type, DDS_Long index) {
    const auto offset = static_cast<size_t>(index);
    if (self.discontiguousBuffer != nullptr) {
        return self.discontiguousBuffer[offset];
    }
    return static_cast<char*>(self.contiguousBuffer) + offset * type.size;
}

}  // namespace pexa::base

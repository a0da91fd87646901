#include "pexa/sequence.h"
#include "platform/base/sequence/operation.hpp"

using pexa::base::SequenceOperation;

// These look at the flags only and so work on a record of which nothing else is set yet.

DDS_Boolean PEXASequence_get_element_pointers_allocation(const PEXASequence* self) {
    return self->elementAllocationParams.allocate_pointers;
}

DDS_Boolean PEXASequence_set_element_pointers_allocation(PEXASequence* self,
                                                         const PEXASequenceElement* type,
                                                         DDS_Boolean allocate) {
    if (self->maximum != 0) {
        return SequenceOperation(type, "set_element_pointers_allocation")
            .violated(
                "Pointers allocation policy can be configured only when the maximum size of the "
                "sequence is 0");
    }
    self->elementAllocationParams.allocate_pointers = allocate;
    self->elementDeallocationParams.delete_pointers = allocate;
    return DDS_BOOLEAN_TRUE;
}

DDS_Boolean PEXASequence_get_element_allocation_params(const PEXASequence* self,
                                                       const PEXASequenceElement* type,
                                                       DDS_TypeAllocationParams_t* params) {
    if (self == nullptr || params == nullptr) {
        return SequenceOperation(type, "get_element_allocation_params")
            .bad_parameter(self == nullptr ? "self" : "params");
    }
    *params = self->elementAllocationParams;
    return DDS_BOOLEAN_TRUE;
}

DDS_Boolean PEXASequence_set_element_allocation_params(PEXASequence* self,
                                                       const PEXASequenceElement* type,
                                                       const DDS_TypeAllocationParams_t* params) {
    const SequenceOperation operation(type, "set_element_allocation_params");
    if (self == nullptr || params == nullptr) {
        return operation.bad_parameter(self == nullptr ? "self" : "params");
    }
    if (self->maximum != 0) {
        return operation.violated(
            "Member allocation parameters can be configured only when the maximum size of the "
            "sequence is 0");
    }
    self->elementAllocationParams = *params;
    return DDS_BOOLEAN_TRUE;
}

DDS_Boolean PEXASequence_get_element_deallocation_params(const PEXASequence* self,
                                                         const PEXASequenceElement* type,
                                                         DDS_TypeDeallocationParams_t* params) {
    if (self == nullptr || params == nullptr) {
        return SequenceOperation(type, "get_element_deallocation_params")
            .bad_parameter(self == nullptr ? "self" : "params");
    }
    *params = self->elementDeallocationParams;
    return DDS_BOOLEAN_TRUE;
}

DDS_Boolean PEXASequence_set_element_deallocation_params(
    PEXASequence* self, const PEXASequenceElement* type,
    const DDS_TypeDeallocationParams_t* params) {
    if (self == nullptr || params == nullptr) {
        return SequenceOperation(type, "set_element_deallocation_params")
            .bad_parameter(self == nullptr ? "self" : "params");
    }
    self->elementDeallocationParams = *params;
    return DDS_BOOLEAN_TRUE;
}

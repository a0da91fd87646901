#include "pexa/sequence.h"
#include "platform/base/result.hpp"
#include "platform/base/sequence/operation.hpp"

namespace pexa::base {
namespace {

// None of these initialises a record: they need nothing but its parameters.

Status set_pointers_allocation(PEXASequence* self, const PEXASequenceElement* type,
                               DDS_Boolean allocate) {
    if (self->maximum != 0) {
        return SequenceOperation(type, "set_element_pointers_allocation")
            .violated(
                "Pointers allocation policy can be configured only when the maximum size of the "
                "sequence is 0");
    }
    self->elementAllocationParams.allocate_pointers = allocate;
    self->elementDeallocationParams.delete_pointers = allocate;
    return Status::ok;
}

Status check_not_null(const PEXASequence* self, const void* params,
                      const SequenceOperation& operation) {
    if (self == nullptr || params == nullptr) {
        return operation.bad_parameter(self == nullptr ? "self" : "params");
    }
    return Status::ok;
}

Status get_params(const PEXASequence* self, const PEXASequenceElement* type,
                  DDS_TypeAllocationParams_t* params) {
    const Status checked = check_not_null(self, params, {type, "get_element_allocation_params"});
    if (checked == Status::ok) {
        *params = self->elementAllocationParams;
    }
    return checked;
}

Status set_params(PEXASequence* self, const PEXASequenceElement* type,
                  const DDS_TypeAllocationParams_t* params) {
    const SequenceOperation operation(type, "set_element_allocation_params");
    const Status checked = check_not_null(self, params, operation);
    if (checked != Status::ok) {
        return checked;
    }
    if (self->maximum != 0) {
        return operation.violated(
            "Member allocation parameters can be configured only when the maximum size of the "
            "sequence is 0");
    }
    self->elementAllocationParams = *params;
    return Status::ok;
}

Status get_params(const PEXASequence* self, const PEXASequenceElement* type,
                  DDS_TypeDeallocationParams_t* params) {
    const Status checked = check_not_null(self, params, {type, "get_element_deallocation_params"});
    if (checked == Status::ok) {
        *params = self->elementDeallocationParams;
    }
    return checked;
}

Status set_params(PEXASequence* self, const PEXASequenceElement* type,
                  const DDS_TypeDeallocationParams_t* params) {
    const Status checked = check_not_null(self, params, {type, "set_element_deallocation_params"});
    if (checked == Status::ok) {
        self->elementDeallocationParams = *params;
    }
    return checked;
}

}  // namespace
}  // namespace pexa::base

using pexa::base::get_params;
using pexa::base::set_params;
using pexa::base::to_boolean;

DDS_Boolean PEXASequence_get_element_pointers_allocation(const PEXASequence* self) {
    return self->elementAllocationParams.allocate_pointers;
}

DDS_Boolean PEXASequence_set_element_pointers_allocation(PEXASequence* self,
                                                         const PEXASequenceElement* type,
                                                         DDS_Boolean allocate) {
    return to_boolean(pexa::base::set_pointers_allocation(self, type, allocate));
}

DDS_Boolean PEXASequence_get_element_allocation_params(const PEXASequence* self,
                                                       const PEXASequenceElement* type,
                                                       DDS_TypeAllocationParams_t* params) {
    return to_boolean(get_params(self, type, params));
}

DDS_Boolean PEXASequence_set_element_allocation_params(PEXASequence* self,
                                                       const PEXASequenceElement* type,
                                                       const DDS_TypeAllocationParams_t* params) {
    return to_boolean(set_params(self, type, params));
}

DDS_Boolean PEXASequence_get_element_deallocation_params(const PEXASequence* self,
                                                         const PEXASequenceElement* type,
                                                         DDS_TypeDeallocationParams_t* params) {
    return to_boolean(get_params(self, type, params));
}

DDS_Boolean PEXASequence_set_element_deallocation_params(
    PEXASequence* self, const PEXASequenceElement* type,
    const DDS_TypeDeallocationParams_t* params) {
    return to_boolean(set_params(self, type, params));
}

/**
 * @file value_operations.hpp
 * @brief The value operations of one type, by their exported names.
 */
#pragma once

#include "types/values.hpp"

namespace orvane::types {

inline DDS_TypeAllocationParams_t allocation_params(DDS_Boolean pointers, DDS_Boolean memory) {
    DDS_TypeAllocationParams_t params = DDS_TYPE_ALLOCATION_PARAMS_DEFAULT;
    params.allocate_pointers = pointers;
    params.allocate_memory = memory;
    return params;
}

inline DDS_TypeDeallocationParams_t deallocation_params(DDS_Boolean pointers) {
    DDS_TypeDeallocationParams_t params = DDS_TYPE_DEALLOCATION_PARAMS_DEFAULT;
    params.delete_pointers = pointers;
    return params;
}

/** `T_…` */
template <typename T>
struct ValueOperations {
    static constexpr const TypeTable& table = Description<T>::table;

    static const DDS_TypeCode* get_typecode() { return &Description<T>::code; }

    static DDS_Boolean initialize(T* self) {
        return initialize_ex(self, DDS_BOOLEAN_TRUE, DDS_BOOLEAN_TRUE);
    }
    static DDS_Boolean initialize_ex(T* self, DDS_Boolean pointers, DDS_Boolean memory) {
        const DDS_TypeAllocationParams_t params = allocation_params(pointers, memory);
        return initialize_w_params(self, &params);
    }
    static DDS_Boolean initialize_w_params(T* self, const DDS_TypeAllocationParams_t* params) {
        return self != nullptr && params != nullptr && initialise(table, self, *params);
    }

    static void finalize(T* self) { finalize_ex(self, DDS_BOOLEAN_TRUE); }
    static void finalize_ex(T* self, DDS_Boolean pointers) {
        const DDS_TypeDeallocationParams_t params = deallocation_params(pointers);
        finalize_w_params(self, &params);
    }
    static void finalize_w_params(T* self, const DDS_TypeDeallocationParams_t* params) {
        if (self != nullptr && params != nullptr) {
            finalise(table, self);
        }
    }
    static void finalize_optional_members(T* /*self*/, DDS_Boolean /*pointers*/) {}

    static DDS_Boolean copy(T* self, const T* source) {
        return self != nullptr && source != nullptr && types::copy(table, self, source);
    }
};

}  // namespace orvane::types

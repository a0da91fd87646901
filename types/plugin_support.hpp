/**
 * @file plugin_support.hpp
 * @brief `TPluginSupport_…` of one type, by the exported names: records on the heap, and printing.
 */
#pragma once

#include "types/print.hpp"
#include "types/value_operations.hpp"

namespace orvane::types {

/** @return a new, initialised record, or NULL without memory. */
void* create_record(const TypeTable& table, const DDS_TypeAllocationParams_t& params);

/** Finalises and frees a record; NULL is ignored. */
void destroy_record(const TypeTable& table, void* record);

/** `TPluginSupport_…` */
template <typename T>
struct PluginSupport {
    using Value = ValueOperations<T>;
    static constexpr const TypeTable& table = Description<T>::table;

    static T* create_data() { return create_data_ex(DDS_BOOLEAN_TRUE); }
    static T* create_data_ex(DDS_Boolean pointers) {
        const DDS_TypeAllocationParams_t params = allocation_params(pointers, DDS_BOOLEAN_TRUE);
        return create_data_w_params(&params);
    }
    static T* create_data_w_params(const DDS_TypeAllocationParams_t* params) {
        return params == nullptr ? nullptr : static_cast<T*>(create_record(table, *params));
    }

    static void destroy_data(T* sample) { destroy_data_ex(sample, DDS_BOOLEAN_TRUE); }
    static void destroy_data_ex(T* sample, DDS_Boolean pointers) {
        const DDS_TypeDeallocationParams_t params = deallocation_params(pointers);
        destroy_data_w_params(sample, &params);
    }
    static void destroy_data_w_params(T* sample, const DDS_TypeDeallocationParams_t* params) {
        if (params != nullptr) {
            destroy_record(table, sample);
        }
    }

    static DDS_Boolean copy_data(T* destination, const T* source) {
        return Value::copy(destination, source);
    }

    static T* create_key() { return create_data(); }
    static T* create_key_ex(DDS_Boolean pointers) { return create_data_ex(pointers); }
    static void destroy_key(T* key) { destroy_data(key); }
    static void destroy_key_ex(T* key, DDS_Boolean pointers) { destroy_data_ex(key, pointers); }

    static void print_data(const T* sample, const char* description, DDS_UnsignedLong indent) {
        print(table, sample, description, indent);
    }
};

}  // namespace orvane::types

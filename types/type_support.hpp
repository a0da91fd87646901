/**
 * @file type_support.hpp
 * @brief `TTypeSupport_…` of one topic type, by the exported names.
 */
#pragma once

#include "pexa/domain.h"
#include "types/plugin.hpp"
#include "types/value_operations.hpp"

namespace orvane::types {

/** Makes a plugin with `make`, registers it and deletes it again. */
DDS_ReturnCode_t register_type(DDS_DomainParticipant* participant, const char* type_name,
                               TULVTypePlugin* (*make)());
DDS_ReturnCode_t unregister_type(DDS_DomainParticipant* participant, const char* type_name);

constexpr DDS_ReturnCode_t ok_or_error(DDS_Boolean succeeded) {
    return succeeded != DDS_BOOLEAN_FALSE ? DDS_RETCODE_OK : DDS_RETCODE_ERROR;
}

template <typename T>
struct TypeSupport {
    using Value = ValueOperations<T>;
    using Support = PluginSupport<T>;
    using Plugin = types::Plugin<T>;

    static DDS_ReturnCode_t register_type(DDS_DomainParticipant* participant, const char* name) {
        return types::register_type(participant, name, Plugin::make);
    }
    static DDS_ReturnCode_t unregister_type(DDS_DomainParticipant* participant, const char* name) {
        return types::unregister_type(participant, name);
    }
    static const char* get_type_name() { return Description<T>::table.name; }
    static const DDS_TypeCode* get_typecode() { return Value::get_typecode(); }

    static T* create_data() { return Support::create_data(); }
    static T* create_data_ex(DDS_Boolean pointers) { return Support::create_data_ex(pointers); }
    static T* create_data_w_params(const DDS_TypeAllocationParams_t* params) {
        return Support::create_data_w_params(params);
    }
    static DDS_ReturnCode_t delete_data(T* sample) {
        Support::destroy_data(sample);
        return DDS_RETCODE_OK;
    }
    static DDS_ReturnCode_t delete_data_ex(T* sample, DDS_Boolean pointers) {
        Support::destroy_data_ex(sample, pointers);
        return DDS_RETCODE_OK;
    }
    static DDS_ReturnCode_t delete_data_w_params(T* sample,
                                                 const DDS_TypeDeallocationParams_t* params) {
        Support::destroy_data_w_params(sample, params);
        return DDS_RETCODE_OK;
    }

    static DDS_ReturnCode_t initialize_data(T* sample) {
        Value::initialize(sample);
        return DDS_RETCODE_OK;
    }
    static DDS_ReturnCode_t initialize_data_ex(T* sample, DDS_Boolean pointers) {
        Value::initialize_ex(sample, pointers, DDS_BOOLEAN_TRUE);
        return DDS_RETCODE_OK;
    }
    static DDS_ReturnCode_t initialize_data_w_params(T* sample,
                                                     const DDS_TypeAllocationParams_t* params) {
        Value::initialize_w_params(sample, params);
        return DDS_RETCODE_OK;
    }
    static DDS_ReturnCode_t finalize_data(T* sample) {
        Value::finalize(sample);
        return DDS_RETCODE_OK;
    }
    static DDS_ReturnCode_t finalize_data_ex(T* sample, DDS_Boolean pointers) {
        Value::finalize_ex(sample, pointers);
        return DDS_RETCODE_OK;
    }
    static DDS_ReturnCode_t finalize_data_w_params(T* sample,
                                                   const DDS_TypeDeallocationParams_t* params) {
        Value::finalize_w_params(sample, params);
        return DDS_RETCODE_OK;
    }

    static DDS_ReturnCode_t copy_data(T* destination, const T* source) {
        return ok_or_error(Value::copy(destination, source));
    }
    static void print_data(const T* sample) { Support::print_data(sample, nullptr, 0); }
    static DDS_ReturnCode_t serialize_data_to_cdr_buffer(char* buffer, DDS_UnsignedLong* length,
                                                         const T* sample) {
        return ok_or_error(Plugin::serialize_to_cdr_buffer(buffer, length, sample));
    }
    static DDS_ReturnCode_t deserialize_data_from_cdr_buffer(T* sample, const char* buffer,
                                                             DDS_UnsignedLong length) {
        return ok_or_error(Plugin::deserialize_from_cdr_buffer(sample, buffer, length));
    }
    static void finalize() {}
};

}  // namespace orvane::types

/**
 * @file typed_writer.hpp
 * @brief `TDataWriter_…` of one topic type, by the exported names.
 */
#pragma once

#include "pexa/publication.h"
#include "types/table.hpp"

namespace orvane::types {

/** @return the writer, or NULL after a report: NULL or of another type. */
DDS_DataWriter* narrow_writer(DDS_DataWriter* writer, const char* type_name);
DDS_DataWriter* as_datawriter(DDS_DataWriter* writer);

/** An untyped operation that a sample and parameters are forwarded to. */
using UntypedWrite = DDS_ReturnCode_t (*)(DDS_DataWriter*, const void*, const DDS_WriteParams_t*);

/** Calls the operation with a handle and a source timestamp. NULL for either is reported. */
DDS_ReturnCode_t write_with(UntypedWrite write, DDS_DataWriter* writer, const void* sample,
                            const DDS_InstanceHandle_t* handle, const DDS_Time_t* timestamp);
DDS_InstanceHandle_t register_instance(DDS_DataWriter* writer, const void* sample,
                                       const DDS_Time_t* timestamp);

template <typename T>
struct DataWriter {
    using Writer = DDS_DataWriter;
    using Handle = DDS_InstanceHandle_t;

    static Writer* narrow(Writer* writer) {
        return narrow_writer(writer, Description<T>::table.name);
    }
    static DDS_DataWriter* as_datawriter(Writer* writer) { return types::as_datawriter(writer); }

    static DDS_ReturnCode_t write(Writer* self, const T* sample, const Handle* handle) {
        return write_w_timestamp(self, sample, handle, &DDS_TIME_INVALID);
    }
    static DDS_ReturnCode_t write_w_timestamp(Writer* self, const T* sample, const Handle* handle,
                                              const DDS_Time_t* timestamp) {
        return write_with(DDS_DataWriter_write_untypedI, self, sample, handle, timestamp);
    }
    static DDS_ReturnCode_t write_w_params(Writer* self, const T* sample,
                                           const DDS_WriteParams_t* params) {
        return DDS_DataWriter_write_untypedI(self, sample, params);
    }

    static DDS_ReturnCode_t dispose(Writer* self, const T* sample, const Handle* handle) {
        return dispose_w_timestamp(self, sample, handle, &DDS_TIME_INVALID);
    }
    static DDS_ReturnCode_t dispose_w_timestamp(Writer* self, const T* sample, const Handle* handle,
                                                const DDS_Time_t* timestamp) {
        return write_with(DDS_DataWriter_dispose_untypedI, self, sample, handle, timestamp);
    }
    static DDS_ReturnCode_t dispose_w_params(Writer* self, const T* sample,
                                             const DDS_WriteParams_t* params) {
        return DDS_DataWriter_dispose_untypedI(self, sample, params);
    }

    static Handle register_instance(Writer* self, const T* sample) {
        return register_instance_w_timestamp(self, sample, &DDS_TIME_INVALID);
    }
    static Handle register_instance_w_timestamp(Writer* self, const T* sample,
                                                const DDS_Time_t* timestamp) {
        return types::register_instance(self, sample, timestamp);
    }
    static Handle register_instance_w_params(Writer* self, const T* sample,
                                             const DDS_WriteParams_t* params) {
        return DDS_DataWriter_register_instance_untypedI(self, sample, params);
    }

    static DDS_ReturnCode_t unregister_instance(Writer* self, const T* sample,
                                                const Handle* handle) {
        return unregister_instance_w_timestamp(self, sample, handle, &DDS_TIME_INVALID);
    }
    static DDS_ReturnCode_t unregister_instance_w_timestamp(Writer* self, const T* sample,
                                                            const Handle* handle,
                                                            const DDS_Time_t* timestamp) {
        return write_with(DDS_DataWriter_unregister_instance_untypedI, self, sample, handle,
                          timestamp);
    }
    static DDS_ReturnCode_t unregister_instance_w_params(Writer* self, const T* sample,
                                                         const DDS_WriteParams_t* params) {
        return DDS_DataWriter_unregister_instance_untypedI(self, sample, params);
    }

    static DDS_ReturnCode_t get_key_value(Writer* self, T* sample, const Handle* handle) {
        return DDS_DataWriter_get_key_value_untypedI(self, sample, handle);
    }
    static Handle lookup_instance(Writer* self, const T* sample) {
        return DDS_DataWriter_lookup_instance_untypedI(self, sample);
    }
};

}  // namespace orvane::types

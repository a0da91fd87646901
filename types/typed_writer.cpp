#include "types/typed_writer.hpp"

#include "types/endpoint_log.hpp"

namespace orvane::types {

namespace {

/** Reports an argument that is missing. */
bool is_present(const void* argument, const char* name) {
    if (argument == nullptr) {
        log_bad_parameter("TDataWriter_write", name);
    }
    return argument != nullptr;
}

}  // namespace

DDS_DataWriter* narrow_writer(DDS_DataWriter* writer, const char* type_name) {
    constexpr const char* context = "TDataWriter_narrow";
    if (writer == nullptr) {
        log_bad_parameter(context, "null writer");
        return nullptr;
    }
    if (DDS_DataWriter_compare_typeI(writer, type_name) == DDS_BOOLEAN_FALSE) {
        log_bad_parameter(context, "wrong type writer");
        return nullptr;
    }
    return writer;
}

DDS_DataWriter* as_datawriter(DDS_DataWriter* writer) {
    if (writer == nullptr) {
        log_bad_parameter("TDataWriter_as_datawriter", "null writer");
    }
    return writer;
}

DDS_ReturnCode_t write_with(UntypedWrite write, DDS_DataWriter* writer, const void* sample,
                            const DDS_InstanceHandle_t* handle, const DDS_Time_t* timestamp) {
    if (!is_present(handle, "handle") || !is_present(timestamp, "timestamp")) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    DDS_WriteParams_t params = DDS_WRITEPARAMS_DEFAULT;
    params.handle = *handle;
    params.source_timestamp = *timestamp;
    return write(writer, sample, &params);
}

DDS_InstanceHandle_t register_instance(DDS_DataWriter* writer, const void* sample,
                                       const DDS_Time_t* timestamp) {
    if (!is_present(timestamp, "timestamp")) {
        return DDS_HANDLE_NIL;
    }
    DDS_WriteParams_t params = DDS_WRITEPARAMS_DEFAULT;
    params.source_timestamp = *timestamp;
    return DDS_DataWriter_register_instance_untypedI(writer, sample, &params);
}

}  // namespace orvane::types

using orvane::types::DataWriter;

#define DEFINE_WRITER(Prefix, T, Result, operation, parameters, arguments) \
    Result Prefix##_##operation parameters {                               \
        return DataWriter<T>::operation arguments;                         \
    }
#define DEFINE_WRITERS(T) ORVANE_WRITER_OPERATIONS(DEFINE_WRITER, T)

extern "C" {

ORVANE_TOPIC_TYPES(DEFINE_WRITERS)

}  // extern "C"

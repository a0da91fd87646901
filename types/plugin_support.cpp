#include "types/plugin_support.hpp"

#include <cstring>

#include "pexa/osapi.h"

namespace orvane::types {

void* create_record(const TypeTable& table, const DDS_TypeAllocationParams_t& params) {
    void* record = QELOsapiHeap_allocateStructureOfSize(table.record_size);
    if (record == nullptr) {
        return nullptr;
    }
    // Initialisation without memory reads the record's pointers.
    std::memset(record, 0, table.record_size);
    if (!initialise(table, record, params)) {
        destroy_record(table, record);
        return nullptr;
    }
    return record;
}

void destroy_record(const TypeTable& table, void* record) {
    if (record == nullptr) {
        return;
    }
    finalise(table, record);
    QELOsapiHeap_freeStructureBytes(record);
}

}  // namespace orvane::types

using orvane::types::PluginSupport;

#define DEFINE_PLUGIN_SUPPORT(Prefix, T, Result, operation, parameters, arguments) \
    Result Prefix##_##operation parameters {                                       \
        return PluginSupport<T>::operation arguments;                              \
    }
#define DEFINE_PRINT(T) ORVANE_PRINT_OPERATIONS(DEFINE_PLUGIN_SUPPORT, T)
#define DEFINE_DATA(T) ORVANE_PLUGIN_DATA_OPERATIONS(DEFINE_PLUGIN_SUPPORT, T)
#define DEFINE_KEY_DATA(T) ORVANE_PLUGIN_KEY_DATA_OPERATIONS(DEFINE_PLUGIN_SUPPORT, T)

extern "C" {

ORVANE_TYPES(DEFINE_PRINT)
ORVANE_STRUCTURES(DEFINE_DATA)
ORVANE_KEYED_TOPIC_TYPES(DEFINE_KEY_DATA)

}  // extern "C"

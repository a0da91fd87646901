#include "types/heap_record.hpp"

#include <cstring>

#include "pexa/osapi.h"
#include "types/values.hpp"

namespace orvane::types {

void* create_record(const TypeTable& table, const DDS_TypeAllocationParams_t& params) {
    void* record = QELOsapiHeap_allocateStructureOfSize(table.record_size);
    if (record == nullptr) {
        return nullptr;
    }
    // Initialisation without memory looks at the buffers that are there.
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

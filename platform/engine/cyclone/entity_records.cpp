#include "platform/engine/cyclone/entity_records.hpp"

namespace pexa::engine::cyclone {

// The tables are never destroyed: an application may use its entities until the process ends.

EntityTable<TopicRecord>& topics() {
    static auto* const table = new EntityTable<TopicRecord>;
    return *table;
}

EntityTable<WriterRecord>& writers() {
    static auto* const table = new EntityTable<WriterRecord>;
    return *table;
}

EntityTable<ReaderRecord>& readers() {
    static auto* const table = new EntityTable<ReaderRecord>;
    return *table;
}

}  // namespace pexa::engine::cyclone

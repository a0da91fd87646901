#include "platform/engine/cyclone/entity_records.hpp"

#include "platform/engine/cyclone/never_destroyed.hpp"

namespace pexa::engine::cyclone {

EntityTable<TopicRecord>& topics() {
    static NeverDestroyed<EntityTable<TopicRecord>> table;
    return table.get();
}

EntityTable<WriterRecord>& writers() {
    static NeverDestroyed<EntityTable<WriterRecord>> table;
    return table.get();
}

EntityTable<ReaderRecord>& readers() {
    static NeverDestroyed<EntityTable<ReaderRecord>> table;
    return table.get();
}

}  // namespace pexa::engine::cyclone

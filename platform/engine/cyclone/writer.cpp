#include <dds/dds.h>
#include <dds/ddsi/q_protocol.h>

#include <limits>
#include <mutex>
#include <new>

#include "platform/engine/cyclone/entity_table.hpp"
#include "platform/engine/cyclone/listener_bridge.hpp"
#include "platform/engine/cyclone/payload_access.hpp"
#include "platform/engine/cyclone/qos_conversion.hpp"
#include "platform/engine/cyclone/results.hpp"
#include "platform/engine/engine.hpp"

namespace pexa::engine {

namespace {

using cyclone::SerdataPtr;
using cyclone::status_of;
using cyclone::WriterRecord;

constexpr std::size_t encapsulation_size = 4;

// What a late reader gets is decided by the durability service policy, not by the history.
Qos with_late_reader_history(const Qos& qos, EntityId topic) {
    Qos out = qos;
    Qos of_topic;
    if (!qos.history || !qos.resource_limits || !qos.durability_service) {
        static_cast<void>(get_qos(topic, of_topic));
    }
    DurabilityServicePolicy service = qos.durability_service.value_or(
        of_topic.durability_service.value_or(DurabilityServicePolicy{}));
    service.history = qos.history.value_or(of_topic.history.value_or(HistoryPolicy{}));
    service.limits =
        qos.resource_limits.value_or(of_topic.resource_limits.value_or(ResourceLimitsPolicy{}));
    out.durability_service = service;
    return out;
}

// Batching is a switch of the process that a writer looks at when it is created.
dds_entity_t create_engine_writer(EntityId publisher, EntityId topic, const Qos& qos,
                                  const ListenerSetting& listener) {
    static std::mutex batching_mutex;
    const cyclone::QosPtr engine_qos = cyclone::to_engine(qos);
    const cyclone::ListenerPtr engine_listener = cyclone::make_listener(listener);
    const std::lock_guard lock(batching_mutex);
    const bool batches = qos.batching.value_or(false);
    if (batches) {
        dds_write_set_batch(true);
    }
    const dds_entity_t writer =
        dds_create_writer(publisher, topic, engine_qos.get(), engine_listener.get());
    if (batches) {
        dds_write_set_batch(false);
    }
    return writer;
}

std::uint32_t status_info(WriteKind kind, const WriterRecord& writer) {
    switch (kind) {
        case WriteKind::data:
            return 0;
        case WriteKind::dispose:
            return NN_STATUSINFO_DISPOSE;
        case WriteKind::unregister:
            return NN_STATUSINFO_UNREGISTER | (writer.autodispose ? NN_STATUSINFO_DISPOSE : 0);
    }
    return 0;
}

// Encodes a sample of the writer's type.
Status encode(const WriterRecord& writer, ddsi_serdata_kind kind, const KeyHash& instance,
              std::size_t size, Fill fill, SerdataPtr& out) {
    if (size < encapsulation_size) {
        return Status::bad_parameter;
    }
    const cyclone::TopicRecord& topic = writer.use.topic();
    SerdataPtr data = cyclone::make_serdata(topic.sertype, kind, size);
    if (!data) {
        return Status::out_of_resources;
    }
    if (!fill(data->writable_bytes())) {
        return Status::bad_parameter;
    }
    data->set_key(topic.type->keyed() ? instance : KeyHash{});
    out = std::move(data);
    return Status::ok;
}

Status remember_instance(WriterRecord& writer, const cyclone::Serdata& data) {
    try {
        const std::lock_guard lock(writer.instances_mutex);
        const auto [entry, is_new] = writer.instances.try_emplace(data.key);
        if (!is_new) {
            return Status::ok;
        }
        SerdataPtr key = cyclone::make_key_serdata(data);
        if (key) {
            entry->second = PayloadAccess::adopt(std::move(key));
            return Status::ok;
        }
        writer.instances.erase(entry);
    } catch (const std::bad_alloc&) {
        return Status::out_of_resources;
    }
    return Status::out_of_resources;
}

void forget_instance(WriterRecord& writer, const KeyHash& instance) {
    const std::lock_guard lock(writer.instances_mutex);
    writer.instances.erase(instance);
}

// A heartbeat that any thread sends names the oldest sample of the history as the first that there
// is. What the history has dropped by then is lost even if it is sent afterwards.
std::int64_t most_collected(const Qos& qos) {
    if (!qos.batching.value_or(false)) {
        return 0;
    }
    const HistoryPolicy history = qos.history.value_or(HistoryPolicy{});
    return history.kind == HistoryKind::keep_all ? std::numeric_limits<std::int64_t>::max()
                                                 : history.depth;
}

void send_collected(EntityId writer, WriterRecord& record) {
    record.collection.clear();
    dds_write_flush(writer);
}

Status forward(EntityId writer, SerdataPtr data) {
    const Status result = status_of(dds_forwardcdr(writer, data.get()));
    // The engine has taken over the reference, unless it did not get as far as the writer.
    const bool refused = result == Status::bad_parameter || result == Status::illegal_operation ||
                         result == Status::already_deleted;
    if (!refused) {
        static_cast<void>(data.release());
    }
    return result;
}

}  // namespace

Created create_writer(EntityId publisher, EntityId topic, const Qos& qos,
                      ListenerSetting listener) noexcept {
    auto topic_record = cyclone::topics().find(topic);
    if (!topic_record) {
        return {Status::bad_parameter, no_entity};
    }
    // The engine refuses every write to a topic with a filter.
    if (topic_record->filter) {
        return {Status::illegal_operation, no_entity};
    }
    auto record = std::make_shared<WriterRecord>(std::move(topic_record));
    record->autodispose = qos.autodispose_unregistered_instances.value_or(true);
    record->collection.set_limit(most_collected(qos));

    const dds_entity_t writer =
        create_engine_writer(publisher, topic, with_late_reader_history(qos, topic), listener);
    if (writer > 0) {
        cyclone::writers().add(writer, std::move(record));
    }
    return cyclone::note_creation(writer, publisher, listener);
}

Status write(EntityId writer, WriteKind kind, const KeyHash& instance, std::size_t size, Fill fill,
             Nanoseconds source_timestamp) noexcept {
    const auto record = cyclone::writers().find(writer);
    if (!record || source_timestamp < 0) {
        return Status::bad_parameter;
    }
    SerdataPtr data;
    const Status encoded =
        encode(*record, kind == WriteKind::data ? SDK_DATA : SDK_KEY, instance, size, fill, data);
    if (encoded != Status::ok) {
        return encoded;
    }
    data->timestamp.v = source_timestamp;
    data->statusinfo = status_info(kind, *record);

    const bool keyed = record->use.topic().type->keyed();
    if (keyed && kind != WriteKind::unregister) {
        const Status remembered = remember_instance(*record, *data);
        if (remembered != Status::ok) {
            return remembered;
        }
    }
    // The write may wait, for readers of this process or for acknowledgements.
    if (record->collection.is_old()) {
        send_collected(writer, *record);
    }
    const Status written = forward(writer, std::move(data));
    if (record->collection.add()) {
        send_collected(writer, *record);
    }
    if (keyed && kind == WriteKind::unregister && written == Status::ok) {
        forget_instance(*record, instance);
    }
    return written;
}

Status register_instance(EntityId writer, const KeyHash& instance, std::size_t size,
                         Fill fill) noexcept {
    const auto record = cyclone::writers().find(writer);
    if (!record) {
        return Status::bad_parameter;
    }
    SerdataPtr key;
    const Status encoded = encode(*record, SDK_KEY, instance, size, fill, key);
    if (encoded != Status::ok || !record->use.topic().type->keyed()) {
        return encoded;
    }
    return remember_instance(*record, *key);
}

void flush(EntityId writer) noexcept {
    if (const auto record = cyclone::writers().find(writer)) {
        send_collected(writer, *record);
    }
}

Status wait_for_acknowledgments(EntityId writer, Nanoseconds max_wait) noexcept {
    flush(writer);
    return status_of(dds_wait_for_acks(writer, max_wait));
}

}  // namespace pexa::engine

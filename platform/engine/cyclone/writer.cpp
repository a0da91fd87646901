#include <dds/dds.h>
#include <dds/ddsi/q_protocol.h>

#include "platform/engine/cyclone/entity_records.hpp"
#include "platform/engine/cyclone/entity_tree.hpp"
#include "platform/engine/cyclone/guarded.hpp"
#include "platform/engine/cyclone/listener_conversion.hpp"
#include "platform/engine/cyclone/qos_conversion.hpp"
#include "platform/engine/cyclone/results.hpp"
#include "platform/engine/cyclone/writer_batching.hpp"
#include "platform/engine/engine.hpp"

namespace pexa::engine {

namespace {

using cyclone::guarded;
using cyclone::SerdataPtr;
using cyclone::status_of;
using cyclone::WriterRecord;

constexpr std::size_t encapsulation_size = 4;

// In Cyclone the durability service policy, not the history, decides what a late reader gets. It
// stands only where it shortens a history that keeps all, by a depth that is not the default one.
Status add_late_reader_history(Qos& qos, EntityId topic) {
    Qos of_topic;
    if (!qos.history || !qos.resource_limits || !qos.durability_service) {
        const Status result = get_qos(topic, of_topic);
        if (result != Status::ok) {
            return result;
        }
    }
    DurabilityServicePolicy service = qos.durability_service.value_or(
        of_topic.durability_service.value_or(DurabilityServicePolicy{}));
    const HistoryPolicy history = qos.history.value_or(of_topic.history.value_or(HistoryPolicy{}));
    const bool shortens = history.kind == HistoryKind::keep_all &&
                          service.history.kind == HistoryKind::keep_last &&
                          service.history.depth > HistoryPolicy{}.depth;
    if (!shortens) {
        service.history = history;
    }
    service.limits =
        qos.resource_limits.value_or(of_topic.resource_limits.value_or(ResourceLimitsPolicy{}));
    qos.durability_service = service;
    return Status::ok;
}

dds_entity_t create_cyclone_writer(EntityId publisher, EntityId topic, const ddsi_sertype* type,
                                   const Qos& qos, const ListenerSetting& listener) {
    const cyclone::QosPtr cyclone_qos = cyclone::to_cyclone(qos);
    const cyclone::ListenerPtr cyclone_listener = cyclone::to_cyclone(listener);
    const auto create = [&] {
        return dds_create_writer(publisher, topic, cyclone_qos.get(), cyclone_listener.get());
    };
    const bool batches = qos.batching.value_or(false);
    return batches ? cyclone::create_batching(type, cyclone_qos.get(), create) : create();
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

void send_batch(EntityId writer, WriterRecord& record) {
    record.batch.clear();
    dds_write_flush(writer);
}

Status forward(EntityId writer, SerdataPtr data) {
    const Status result = status_of(dds_forwardcdr(writer, data.get()));
    // Cyclone has taken over the reference, unless it did not get as far as the writer.
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
    // Cyclone refuses every write to a topic with a filter.
    if (topic_record->filter) {
        return {Status::illegal_operation, no_entity};
    }
    return guarded([&]() -> Created {
        Qos complete = qos;
        const Status completed = add_late_reader_history(complete, topic);
        if (completed != Status::ok) {
            return {completed, no_entity};
        }
        const ddsi_sertype* const type = topic_record->sertype;
        cyclone::EntityTable<WriterRecord>::Entry entry(
            std::make_shared<WriterRecord>(std::move(topic_record), qos));
        cyclone::NewEntity entity(publisher);
        const dds_entity_t writer =
            create_cyclone_writer(publisher, topic, type, complete, listener);
        if (writer > 0) {
            cyclone::writers().add(writer, std::move(entry));
        }
        return entity.note(writer);
    });
}

Status write(EntityId writer, WriteKind kind, const KeyHash& instance, std::size_t size, Fill fill,
             Nanoseconds source_timestamp) noexcept {
    const auto record = cyclone::writers().find(writer);
    if (!record) {
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
        const Status remembered = guarded([&] { return record->instances.remember(*data); });
        if (remembered != Status::ok) {
            return remembered;
        }
    }
    // The write may wait, for readers of this process or for acknowledgements.
    if (record->batch.is_old()) {
        send_batch(writer, *record);
    }
    const Status written = forward(writer, std::move(data));
    if (record->batch.add()) {
        send_batch(writer, *record);
    }
    if (keyed && kind == WriteKind::unregister && written == Status::ok) {
        record->instances.remove(instance);
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
    return guarded([&] { return record->instances.remember(*key); });
}

void flush(EntityId writer) noexcept {
    if (const auto record = cyclone::writers().find(writer)) {
        send_batch(writer, *record);
    }
}

Status wait_for_acknowledgments(EntityId writer, Nanoseconds max_wait) noexcept {
    flush(writer);
    return status_of(dds_wait_for_acks(writer, max_wait));
}

}  // namespace pexa::engine

#include <dds/dds.h>

#include "platform/engine/cyclone/domain_trace.hpp"
#include "platform/engine/cyclone/entity_records.hpp"
#include "platform/engine/cyclone/entity_tree.hpp"
#include "platform/engine/cyclone/guarded.hpp"
#include "platform/engine/cyclone/listener_conversion.hpp"
#include "platform/engine/cyclone/qos_conversion.hpp"
#include "platform/engine/cyclone/results.hpp"
#include "platform/engine/cyclone/serdata.hpp"
#include "platform/engine/engine.hpp"

namespace pexa::engine {

namespace {

using cyclone::status_of;

bool filter_sample(const void* sample, void* argument) {
    const auto& view = *static_cast<const cyclone::SampleView*>(sample);
    return static_cast<const cyclone::ReplaceableFilter*>(argument)->accepts(view.data->bytes());
}

std::shared_ptr<cyclone::TopicRecord> make_record(std::shared_ptr<const Type> type,
                                                  ContentFilter filter) {
    auto record = std::make_shared<cyclone::TopicRecord>();
    record->type = cyclone::SharedType::of(std::move(type));
    if (filter) {
        record->filter = std::make_shared<cyclone::ReplaceableFilter>(std::move(filter));
    }
    return record;
}

// Gives Cyclone's topic and registered type, which may have existed before.
dds_entity_t create_cyclone_topic(EntityId participant, const char* name,
                                  const cyclone::TopicRecord& record, const Qos& qos,
                                  const ListenerSetting& listener, ddsi_sertype*& registered) {
    const cyclone::QosPtr cyclone_qos = cyclone::to_cyclone(qos);
    const cyclone::ListenerPtr cyclone_listener = cyclone::to_cyclone(listener);
    registered = cyclone::make_sertype(record.type);
    const dds_entity_t topic = dds_create_topic_sertype(
        participant, name, &registered, cyclone_qos.get(), cyclone_listener.get(), nullptr);
    if (topic < 0) {
        ddsi_sertype_unref(registered);
        return topic;
    }
    cyclone::follow_trace_mask(registered);
    if (record.filter == nullptr) {
        return topic;
    }
    const dds_return_t filtered =
        dds_set_topic_filter_and_arg(topic, filter_sample, record.filter.get());
    if (filtered != DDS_RETCODE_OK) {
        // It was just created, and nobody else knows it.
        static_cast<void>(dds_delete(topic));
        return filtered;
    }
    return topic;
}

}  // namespace

Created create_topic(EntityId participant, const char* name, std::shared_ptr<const Type> type,
                     const Qos& qos, ContentFilter filter, ListenerSetting listener) noexcept {
    if (name == nullptr || !type) {
        return {Status::bad_parameter, no_entity};
    }
    return cyclone::guarded([&] {
        const auto record = make_record(std::move(type), std::move(filter));
        cyclone::EntityTable<cyclone::TopicRecord>::Entry entry(record);
        cyclone::NewEntity entity(participant);
        ddsi_sertype* registered = nullptr;
        const dds_entity_t topic =
            create_cyclone_topic(participant, name, *record, qos, listener, registered);
        if (topic > 0) {
            record->sertype = registered;
            cyclone::topics().add(topic, std::move(entry));
        }
        return entity.note(topic);
    });
}

Status set_content_filter(EntityId topic, ContentFilter filter) noexcept {
    const auto record = cyclone::topics().find(topic);
    if (!record || !filter) {
        return Status::bad_parameter;
    }
    if (!record->filter) {
        return Status::illegal_operation;
    }
    return cyclone::guarded([&] {
        record->filter->replace(std::move(filter));
        return Status::ok;
    });
}

}  // namespace pexa::engine

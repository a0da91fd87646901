#include <dds/dds.h>

#include "platform/engine/cyclone/domain_trace.hpp"
#include "platform/engine/cyclone/entity_records.hpp"
#include "platform/engine/cyclone/entity_tree.hpp"
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

}  // namespace

Created create_topic(EntityId participant, const char* name, std::shared_ptr<const Type> type,
                     const Qos& qos, ContentFilter filter, ListenerSetting listener) noexcept {
    if (name == nullptr || !type) {
        return {Status::bad_parameter, no_entity};
    }
    auto record = std::make_shared<cyclone::TopicRecord>();
    record->type = cyclone::SharedType::of(std::move(type));
    ddsi_sertype* sertype = cyclone::make_sertype(record->type);
    if (sertype == nullptr) {
        return {Status::out_of_resources, no_entity};
    }

    const dds_entity_t topic =
        dds_create_topic_sertype(participant, name, &sertype, cyclone::to_cyclone(qos).get(),
                                 cyclone::to_cyclone(listener).get(), nullptr);
    if (topic < 0) {
        ddsi_sertype_unref(sertype);
        return {status_of(topic), no_entity};
    }
    // Now the registered type, which may have existed before.
    record->sertype = sertype;
    cyclone::follow_trace_mask(sertype);
    if (filter) {
        record->filter = std::make_shared<cyclone::ReplaceableFilter>(std::move(filter));
        const Status filtered =
            status_of(dds_set_topic_filter_and_arg(topic, filter_sample, record->filter.get()));
        if (filtered != Status::ok) {
            // It was just created, and nobody else knows it.
            static_cast<void>(dds_delete(topic));
            return {filtered, no_entity};
        }
    }
    cyclone::topics().add(topic, std::move(record));
    return cyclone::note_creation(topic, participant);
}

Status set_content_filter(EntityId topic, ContentFilter filter) noexcept {
    const auto record = cyclone::topics().find(topic);
    if (!record || !filter) {
        return Status::bad_parameter;
    }
    if (!record->filter) {
        return Status::illegal_operation;
    }
    record->filter->replace(std::move(filter));
    return Status::ok;
}

}  // namespace pexa::engine

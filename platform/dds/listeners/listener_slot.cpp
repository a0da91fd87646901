#include "platform/dds/listeners/listener_slot.hpp"

#include <utility>

namespace pexa::dds {

namespace {

/// @return @p bit for a slot that is filled.
template <typename Callback>
engine::StatusMask filled(Callback* slot, engine::StatusMask bit) {
    return slot != nullptr ? bit : 0;
}

engine::StatusMask filled_slots(const DDS_DomainParticipantListener& record) {
    const DDS_DataWriterListener& writer = record.as_publisherlistener.as_datawriterlistener;
    const DDS_SubscriberListener& subscriber = record.as_subscriberlistener;
    const DDS_DataReaderListener& reader = subscriber.as_datareaderlistener;
    return filled(record.as_topiclistener.on_inconsistent_topic,
                  engine::inconsistent_topic_status) |
           filled(writer.on_offered_deadline_missed, engine::offered_deadline_missed_status) |
           filled(writer.on_offered_incompatible_qos, engine::offered_incompatible_qos_status) |
           filled(writer.on_liveliness_lost, engine::liveliness_lost_status) |
           filled(writer.on_publication_matched, engine::publication_matched_status) |
           filled(reader.on_requested_deadline_missed, engine::requested_deadline_missed_status) |
           filled(reader.on_requested_incompatible_qos, engine::requested_incompatible_qos_status) |
           filled(reader.on_sample_rejected, engine::sample_rejected_status) |
           filled(reader.on_liveliness_changed, engine::liveliness_changed_status) |
           filled(reader.on_data_available, engine::data_available_status) |
           filled(reader.on_subscription_matched, engine::subscription_matched_status) |
           filled(reader.on_sample_lost, engine::sample_lost_status) |
           filled(subscriber.on_data_on_readers, engine::data_on_readers_status);
}

/// Fills the part of a setting that belongs to one kind of listener.
template <typename Listener>
void fill(ListenerSetting& setting, Listener& part, const Listener* listener, DDS_StatusMask mask) {
    if (listener != nullptr) {
        part = *listener;
        setting.mask = mask;
    }
}

}  // namespace

ListenerSetting::ListenerSetting(const DDS_TopicListener* listener, DDS_StatusMask statuses) {
    fill(*this, record.as_topiclistener, listener, statuses);
}

ListenerSetting::ListenerSetting(const DDS_DataWriterListener* listener, DDS_StatusMask statuses) {
    fill(*this, record.as_publisherlistener.as_datawriterlistener, listener, statuses);
}

ListenerSetting::ListenerSetting(const DDS_DataReaderListener* listener, DDS_StatusMask statuses) {
    fill(*this, record.as_subscriberlistener.as_datareaderlistener, listener, statuses);
}

ListenerSetting::ListenerSetting(const DDS_PublisherListener* listener, DDS_StatusMask statuses) {
    fill(*this, record.as_publisherlistener, listener, statuses);
}

ListenerSetting::ListenerSetting(const DDS_SubscriberListener* listener, DDS_StatusMask statuses) {
    fill(*this, record.as_subscriberlistener, listener, statuses);
}

ListenerSetting::ListenerSetting(const DDS_DomainParticipantListener* listener,
                                 DDS_StatusMask statuses) {
    fill(*this, record, listener, statuses);
}

ListenerSetting ListenerSlot::exchange(const ListenerSetting& setting) {
    const std::lock_guard guard(mutex_);
    own_.store(setting.mask & filled_slots(setting.record));
    return std::exchange(setting_, setting);
}

engine::StatusMask ListenerSlot::taken() const {
    engine::StatusMask statuses = 0;
    for (const ListenerSlot* slot = this; slot != nullptr; slot = slot->above_) {
        statuses |= slot->own_.load();
    }
    return statuses;
}

bool ListenerSlot::find(engine::StatusMask status, DDS_DomainParticipantListener& found) const {
    for (const ListenerSlot* slot = this; slot != nullptr; slot = slot->above_) {
        const std::lock_guard guard(slot->mutex_);
        if ((slot->own_.load() & status) != 0) {
            found = slot->setting_.record;
            return true;
        }
    }
    return false;
}

}  // namespace pexa::dds

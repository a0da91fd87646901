#include "platform/dds/listeners/listener_dispatch.hpp"

#include "platform/dds/domain/subscriber.hpp"
#include "platform/dds/endpoints/reader.hpp"
#include "platform/dds/endpoints/writer.hpp"
#include "platform/dds/listeners/status_conversion.hpp"
#include "platform/dds/topics/topic.hpp"

namespace pexa::dds {

namespace {

const DDS_TopicListener& part(const DDS_DomainParticipantListener& listener,
                              const DDS_TopicListener* /*kind*/) {
    return listener.as_topiclistener;
}

const DDS_DataWriterListener& part(const DDS_DomainParticipantListener& listener,
                                   const DDS_DataWriterListener* /*kind*/) {
    return listener.as_publisherlistener.as_datawriterlistener;
}

const DDS_DataReaderListener& part(const DDS_DomainParticipantListener& listener,
                                   const DDS_DataReaderListener* /*kind*/) {
    return listener.as_subscriberlistener.as_datareaderlistener;
}

/// Calls the slot of the nearest listener that takes a status, with the status converted.
template <typename Object, typename Part, typename Record>
void announce(Object& object, engine::StatusMask status_bit,
              void (*Part::*slot)(void*, typename Object::Handle*, const Record*),
              const EngineStatus<Record>& status) {
    DDS_DomainParticipantListener listener;
    if (!object.listeners().find(status_bit, listener)) {
        return;
    }
    Record record{};
    convert(status, record, [&](engine::LocalHandle peer) { return object.peer_handle(peer); });
    const Part& chosen = part(listener, static_cast<const Part*>(nullptr));
    (chosen.*slot)(chosen.listener_data, handle_of(&object), &record);
}

}  // namespace

void TopicDispatch::on_inconsistent_topic(engine::EntityId /*id*/,
                                          const engine::InconsistentTopic& status) {
    announce(topic_, engine::inconsistent_topic_status, &DDS_TopicListener::on_inconsistent_topic,
             status);
}

void WriterDispatch::on_offered_deadline_missed(engine::EntityId /*id*/,
                                                const engine::OfferedDeadlineMissed& status) {
    announce(writer_, engine::offered_deadline_missed_status,
             &DDS_DataWriterListener::on_offered_deadline_missed, status);
}

void WriterDispatch::on_offered_incompatible_qos(engine::EntityId /*id*/,
                                                 const engine::OfferedIncompatibleQos& status) {
    announce(writer_, engine::offered_incompatible_qos_status,
             &DDS_DataWriterListener::on_offered_incompatible_qos, status);
}

void WriterDispatch::on_liveliness_lost(engine::EntityId /*id*/,
                                        const engine::LivelinessLost& status) {
    announce(writer_, engine::liveliness_lost_status, &DDS_DataWriterListener::on_liveliness_lost,
             status);
}

void WriterDispatch::on_publication_matched(engine::EntityId /*id*/,
                                            const engine::PublicationMatched& status) {
    announce(writer_, engine::publication_matched_status,
             &DDS_DataWriterListener::on_publication_matched, status);
}

void ReaderDispatch::on_requested_deadline_missed(engine::EntityId /*id*/,
                                                  const engine::RequestedDeadlineMissed& status) {
    announce(reader_, engine::requested_deadline_missed_status,
             &DDS_DataReaderListener::on_requested_deadline_missed, status);
}

void ReaderDispatch::on_requested_incompatible_qos(engine::EntityId /*id*/,
                                                   const engine::RequestedIncompatibleQos& status) {
    announce(reader_, engine::requested_incompatible_qos_status,
             &DDS_DataReaderListener::on_requested_incompatible_qos, status);
}

void ReaderDispatch::on_sample_lost(engine::EntityId /*id*/, const engine::SampleLost& status) {
    announce(reader_, engine::sample_lost_status, &DDS_DataReaderListener::on_sample_lost, status);
}

void ReaderDispatch::on_sample_rejected(engine::EntityId /*id*/,
                                        const engine::SampleRejected& status) {
    announce(reader_, engine::sample_rejected_status, &DDS_DataReaderListener::on_sample_rejected,
             status);
}

void ReaderDispatch::on_liveliness_changed(engine::EntityId /*id*/,
                                           const engine::LivelinessChanged& status) {
    announce(reader_, engine::liveliness_changed_status,
             &DDS_DataReaderListener::on_liveliness_changed, status);
}

void ReaderDispatch::on_subscription_matched(engine::EntityId /*id*/,
                                             const engine::SubscriptionMatched& status) {
    announce(reader_, engine::subscription_matched_status,
             &DDS_DataReaderListener::on_subscription_matched, status);
}

void ReaderDispatch::on_data_available(engine::EntityId /*id*/) {
    DDS_DomainParticipantListener listener;
    if (reader_.listeners().find(engine::data_available_status, listener)) {
        const DDS_DataReaderListener& chosen = listener.as_subscriberlistener.as_datareaderlistener;
        chosen.on_data_available(chosen.listener_data, handle_of(&reader_));
    }
}

void SubscriberDispatch::on_data_on_readers(engine::EntityId /*id*/) {
    DDS_DomainParticipantListener listener;
    if (subscriber_.listeners().find(engine::data_on_readers_status, listener)) {
        const DDS_SubscriberListener& chosen = listener.as_subscriberlistener;
        chosen.on_data_on_readers(chosen.as_datareaderlistener.listener_data,
                                  handle_of(&subscriber_));
    }
}

}  // namespace pexa::dds

#include "platform/dds/endpoints/reader_dispatch.hpp"

#include "platform/dds/endpoints/reader.hpp"
#include "platform/dds/interface/scoped_call.hpp"
#include "platform/dds/listeners/announce.hpp"

namespace pexa::dds {

void ReaderDispatch::on_status(engine::EntityId /*id*/, engine::StatusMask kind,
                               const engine::CommunicationStatus& status) {
    switch (kind) {
        case engine::requested_deadline_missed_status:
            announce(reader_, &DDS_DataReaderListener::on_requested_deadline_missed, status);
            return;
        case engine::requested_incompatible_qos_status:
            announce(reader_, &DDS_DataReaderListener::on_requested_incompatible_qos, status);
            return;
        case engine::sample_lost_status:
            announce(reader_, &DDS_DataReaderListener::on_sample_lost, status);
            return;
        case engine::sample_rejected_status:
            announce(reader_, &DDS_DataReaderListener::on_sample_rejected, status);
            return;
        case engine::liveliness_changed_status:
            announce(reader_, &DDS_DataReaderListener::on_liveliness_changed, status);
            return;
        case engine::subscription_matched_status:
            announce(reader_, &DDS_DataReaderListener::on_subscription_matched, status);
            return;
        default:
            return;
    }
}

void ReaderDispatch::on_data_available(engine::EntityId /*id*/) {
    const EngineCall mark;
    DDS_DomainParticipantListener listener;
    if (reader_.listeners().find(engine::data_available_status, listener)) {
        const DDS_DataReaderListener& chosen = listener.as_subscriberlistener.as_datareaderlistener;
        chosen.on_data_available(chosen.listener_data, handle_of(&reader_));
    }
}

}  // namespace pexa::dds

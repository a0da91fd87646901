#include "platform/dds/endpoints/writer_dispatch.hpp"

#include "platform/dds/endpoints/writer.hpp"
#include "platform/dds/listeners/announce.hpp"

namespace pexa::dds {

void WriterDispatch::on_status(engine::EntityId /*id*/, engine::StatusMask kind,
                               const engine::CommunicationStatus& status) {
    switch (kind) {
        case engine::offered_deadline_missed_status:
            announce(writer_, &DDS_DataWriterListener::on_offered_deadline_missed, status);
            return;
        case engine::offered_incompatible_qos_status:
            announce(writer_, &DDS_DataWriterListener::on_offered_incompatible_qos, status);
            return;
        case engine::liveliness_lost_status:
            announce(writer_, &DDS_DataWriterListener::on_liveliness_lost, status);
            return;
        case engine::publication_matched_status:
            announce(writer_, &DDS_DataWriterListener::on_publication_matched, status);
            return;
        default:
            return;
    }
}

}  // namespace pexa::dds

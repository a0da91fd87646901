#include "platform/dds/topics/topic.hpp"

#include "platform/dds/domain/participant.hpp"
#include "platform/dds/listeners/status_conversion.hpp"

namespace pexa::dds {

Topic::Topic(Participant& participant, const char* name, std::shared_ptr<const TypeAdapter> type)
    : QosEntity(&participant, participant.default_topic_qos()),
      TopicDescription(participant, name, std::move(type)) {}

engine::EntityId Topic::engine_topic(const Operation& /*operation*/) {
    return engine_id();
}

engine::Created Topic::create_in_engine(const Operation& /*operation*/) {
    engine::Qos qos;
    if (to_engine_qos(qos) != DDS_RETCODE_OK) {
        return {Status::out_of_resources};
    }
    return engine::create_topic(participant()->engine_id(), name(), type(), qos);
}

engine::Created Topic::create_filtered(const engine::ContentFilter& filter) const {
    engine::Qos qos;
    if (to_engine_qos(qos) != DDS_RETCODE_OK) {
        return {Status::out_of_resources};
    }
    return engine::create_topic(participant()->engine_id(), name(), type(), qos, filter);
}

DDS_ReturnCode_t Topic::get_inconsistent_topic_status(DDS_InconsistentTopicStatus& status) const {
    return read_status(engine_id(), status,
                       [](engine::LocalHandle peer) { return peer_handle(peer); });
}

}  // namespace pexa::dds

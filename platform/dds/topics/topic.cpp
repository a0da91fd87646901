#include "platform/dds/topics/topic.hpp"

#include "platform/dds/listeners/announce.hpp"

namespace pexa::dds {

Topic::Topic(Participant& participant, const Entity& parent,
             const DefaultQos<DDS_TopicQos>& defaults, const char* name,
             std::shared_ptr<const TypeAdapter> type)
    : QosEntity(&parent, defaults), TopicDescription(participant, name, std::move(type)) {}

Result<engine::EntityId> TopicDescription::result_of(engine::EntityId id) {
    if (id == engine::no_entity) {
        return Status::precondition_not_met;
    }
    return id;
}

Result<engine::EntityId> Topic::engine_topic(const Operation& /*operation*/) {
    return result_of(engine_id());
}

engine::Created Topic::create_in_engine(const Operation& operation) {
    engine::Qos qos;
    if (to_engine_qos(qos) != Status::ok) {
        return {Status::out_of_resources};
    }
    return allowed(operation, name(), engine::create_topic(parent_id(), name(), type(), qos));
}

engine::Created Topic::create_filtered(const engine::ContentFilter& filter) const {
    engine::Qos qos;
    if (to_engine_qos(qos) != Status::ok) {
        return {Status::out_of_resources};
    }
    return engine::create_topic(parent_id(), name(), type(), qos, filter);
}

Status Topic::get_inconsistent_topic_status(DDS_InconsistentTopicStatus& status) const {
    return read_status(engine_id(), status,
                       [](engine::LocalHandle peer) { return peer_handle(peer); });
}

void TopicDispatch::on_status(engine::EntityId /*id*/, engine::StatusMask /*kind*/,
                              const engine::CommunicationStatus& status) {
    announce(topic_, &DDS_TopicListener::on_inconsistent_topic, status);
}

}  // namespace pexa::dds

namespace dds = pexa::dds;

DDS_Entity* DDS_Topic_as_entity(DDS_Topic* self) {
    return dds::call(__func__, self, &dds::Topic::as_entity);
}

DDS_Topic* DDS_Topic_narrow(DDS_TopicDescription* description) {
    return dds::call(__func__, description, &dds::TopicDescription::as_topic);
}

DDS_TopicDescription* DDS_Topic_as_topicdescription(DDS_Topic* self) {
    return dds::call(__func__, self, &dds::Topic::as_description);
}

const char* DDS_TopicDescription_get_name(DDS_TopicDescription* self) {
    return dds::call(__func__, self, &dds::TopicDescription::name);
}

const char* DDS_TopicDescription_get_type_name(DDS_TopicDescription* self) {
    return dds::call(__func__, self, &dds::TopicDescription::type_name);
}

DDS_ReturnCode_t DDS_Topic_get_qos(DDS_Topic* self, DDS_TopicQos* qos) {
    return dds::call(__func__, self, &dds::Topic::get_qos, dds::required("qos", qos));
}

DDS_ReturnCode_t DDS_Topic_set_qos(DDS_Topic* self, const DDS_TopicQos* qos) {
    return dds::call(__func__, self, &dds::Topic::set_qos, qos);
}

DDS_ReturnCode_t DDS_Topic_set_listener(DDS_Topic* self, const DDS_TopicListener* listener,
                                        DDS_StatusMask mask) {
    return dds::call(__func__, self, &dds::Topic::set_listener,
                     dds::ListenerSetting(listener, mask));
}

DDS_ReturnCode_t DDS_Topic_get_inconsistent_topic_status(DDS_Topic* self,
                                                         DDS_InconsistentTopicStatus* status) {
    return dds::call(__func__, self, &dds::Topic::get_inconsistent_topic_status,
                     dds::required("status", status));
}

#include "platform/dds/endpoints/writer.hpp"

#include "platform/dds/conditions/waiting.hpp"
#include "platform/dds/qos/duration.hpp"

namespace pexa::dds {

DataWriter::DataWriter(Publisher& publisher, const Entity& parent,
                       const DefaultQos<DDS_DataWriterQos>& defaults, Topic& topic)
    : Endpoint(parent, defaults, topic, TULV_ENDPOINT_WRITER), publisher_(publisher) {}

engine::Created DataWriter::create(engine::EntityId topic, const engine::Qos& qos) {
    return engine::create_writer(parent_id(), topic, qos);
}

engine::StatusMask DataWriter::statuses() const {
    return engine::offered_deadline_missed_status | engine::offered_incompatible_qos_status |
           engine::liveliness_lost_status | engine::publication_matched_status;
}

Status DataWriter::wait_for_acknowledgments(const Operation& operation,
                                            const DDS_Duration_t& max_wait) const {
    if (!is_valid(max_wait)) {
        return operation.bad_parameter("maxWait");
    }
    const engine::EntityId id = engine_id();
    return id == engine::no_entity ? Status::not_enabled
                                   : engine::wait_for_acknowledgments(id, to_nanoseconds(max_wait));
}

Status DataWriter::assert_liveliness() const {
    const engine::EntityId id = engine_id();
    return id == engine::no_entity ? Status::not_enabled : engine::assert_liveliness(id);
}

}  // namespace pexa::dds

namespace dds = pexa::dds;

DDS_Entity* DDS_DataWriter_as_entity(DDS_DataWriter* self) {
    return dds::call(__func__, self, &dds::DataWriter::as_entity);
}

DDS_ReturnCode_t DDS_DataWriter_get_qos(DDS_DataWriter* self, DDS_DataWriterQos* qos) {
    return dds::call(__func__, self, &dds::DataWriter::get_qos, dds::required("qos", qos));
}

DDS_ReturnCode_t DDS_DataWriter_set_qos(DDS_DataWriter* self, const DDS_DataWriterQos* qos) {
    return dds::call(__func__, self, &dds::DataWriter::set_qos, qos);
}

DDS_ReturnCode_t DDS_DataWriter_set_listener(DDS_DataWriter* self,
                                             const DDS_DataWriterListener* listener,
                                             DDS_StatusMask mask) {
    return dds::call(__func__, self, &dds::DataWriter::set_listener,
                     dds::ListenerSetting(listener, mask));
}

DDS_Topic* DDS_DataWriter_get_topic(DDS_DataWriter* self) {
    return dds::call(__func__, self, &dds::DataWriter::topic);
}

DDS_Boolean DDS_DataWriter_compare_typeI(DDS_DataWriter* self, const char* typeName) {
    return dds::call(__func__, self, &dds::DataWriter::is_of_type,
                     dds::required("typeName", typeName));
}

DDS_ReturnCode_t DDS_DataWriter_get_key_value_untypedI(DDS_DataWriter* self, void* sample,
                                                       const DDS_InstanceHandle_t* handle) {
    return dds::call(__func__, self, &dds::DataWriter::get_key_value,
                     dds::required("sample", sample), dds::required("handle", handle));
}

DDS_InstanceHandle_t DDS_DataWriter_lookup_instance_untypedI(DDS_DataWriter* self,
                                                             const void* sample) {
    return dds::call(__func__, self, &dds::DataWriter::lookup_instance,
                     dds::required("sample", sample));
}

DDS_ReturnCode_t DDS_DataWriter_wait_for_acknowledgments(DDS_DataWriter* self,
                                                         const DDS_Duration_t* maxWait) {
    const char* const name = __func__;
    // A step that is too short for what is written meanwhile has to grow until it is not.
    return dds::wait_in_steps(
        maxWait,
        [&](const DDS_Duration_t* step) {
            return dds::call(name, self, &dds::DataWriter::wait_for_acknowledgments,
                             dds::required("maxWait", step));
        },
        pexa::engine::infinite);
}

DDS_ReturnCode_t DDS_DataWriter_assert_liveliness(DDS_DataWriter* self) {
    return dds::call(__func__, self, &dds::DataWriter::assert_liveliness);
}

DDS_ReturnCode_t DDS_DataWriter_get_publication_matched_status(
    DDS_DataWriter* self, DDS_PublicationMatchedStatus* status) {
    return dds::call(__func__, self, &dds::DataWriter::get_status<DDS_PublicationMatchedStatus>,
                     dds::required("status", status));
}

DDS_ReturnCode_t DDS_DataWriter_get_liveliness_lost_status(DDS_DataWriter* self,
                                                           DDS_LivelinessLostStatus* status) {
    return dds::call(__func__, self, &dds::DataWriter::get_status<DDS_LivelinessLostStatus>,
                     dds::required("status", status));
}

DDS_ReturnCode_t DDS_DataWriter_get_offered_deadline_missed_status(
    DDS_DataWriter* self, DDS_OfferedDeadlineMissedStatus* status) {
    return dds::call(__func__, self, &dds::DataWriter::get_status<DDS_OfferedDeadlineMissedStatus>,
                     dds::required("status", status));
}

DDS_ReturnCode_t DDS_DataWriter_get_offered_incompatible_qos_status(
    DDS_DataWriter* self, DDS_OfferedIncompatibleQosStatus* status) {
    return dds::call(__func__, self, &dds::DataWriter::get_status<DDS_OfferedIncompatibleQosStatus>,
                     dds::required("status", status));
}

DDS_ReturnCode_t DDS_DataWriter_get_matched_subscriptions(DDS_DataWriter* self,
                                                          DDS_InstanceHandleSeq* handles) {
    return dds::call(__func__, self, &dds::DataWriter::get_matched_peers,
                     dds::required("handles", handles));
}

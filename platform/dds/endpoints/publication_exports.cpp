#include "platform/dds/domain/participant.hpp"
#include "platform/dds/domain/publisher.hpp"
#include "platform/dds/endpoints/writer.hpp"

namespace dds = pexa::dds;

const DDS_WriteParams_t DDS_WRITEPARAMS_DEFAULT = {{{{0}, 0}, 0}, {-1, 0xffffffffu}};

DDS_ReturnCode_t DDS_Publisher_get_qos(DDS_Publisher* self, DDS_PublisherQos* qos) {
    return dds::call(__func__, self, &dds::Publisher::get_qos, dds::required("qos", qos));
}

DDS_ReturnCode_t DDS_Publisher_set_qos(DDS_Publisher* self, const DDS_PublisherQos* qos) {
    return dds::call(__func__, self, &dds::Publisher::set_qos, qos);
}

DDS_ReturnCode_t DDS_Publisher_set_listener(DDS_Publisher* self,
                                            const DDS_PublisherListener* listener,
                                            DDS_StatusMask mask) {
    return dds::call(__func__, self, &dds::Publisher::set_listener,
                     dds::ListenerSetting(listener, mask));
}

DDS_DataWriter* DDS_Publisher_create_datawriter(DDS_Publisher* self, DDS_Topic* topic,
                                                const DDS_DataWriterQos* qos,
                                                const DDS_DataWriterListener* listener,
                                                DDS_StatusMask mask) {
    return dds::call(__func__, self, &dds::Publisher::create_writer, dds::required(topic), qos,
                     listener, mask);
}

DDS_ReturnCode_t DDS_Publisher_delete_datawriter(DDS_Publisher* self, DDS_DataWriter* writer) {
    return dds::call(__func__, self, &dds::Publisher::delete_writer, dds::required(writer));
}

DDS_DataWriter* DDS_Publisher_lookup_datawriter(DDS_Publisher* self, const char* topicName) {
    return dds::call(__func__, self, &dds::Publisher::find_writer,
                     dds::required("topicName", topicName));
}

DDS_ReturnCode_t DDS_Publisher_delete_contained_entities(DDS_Publisher* self) {
    return dds::call(__func__, self, &dds::Publisher::delete_contained);
}

DDS_ReturnCode_t DDS_Publisher_get_default_datawriter_qos(DDS_Publisher* self,
                                                          DDS_DataWriterQos* qos) {
    return dds::call(__func__, self, &dds::Publisher::get_default_writer_qos,
                     dds::required("qos", qos));
}

DDS_ReturnCode_t DDS_Publisher_set_default_datawriter_qos(DDS_Publisher* self,
                                                          const DDS_DataWriterQos* qos) {
    return dds::call(__func__, self, &dds::Publisher::set_default_writer_qos, qos);
}

DDS_DomainParticipant* DDS_Publisher_get_participant(DDS_Publisher* self) {
    return dds::call(__func__, self, &dds::Publisher::participant);
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

DDS_Publisher* DDS_DataWriter_get_publisher(DDS_DataWriter* self) {
    return dds::call(__func__, self, &dds::DataWriter::publisher);
}

DDS_Boolean DDS_DataWriter_compare_typeI(DDS_DataWriter* self, const char* typeName) {
    return dds::call(__func__, self, &dds::DataWriter::is_of_type,
                     dds::required("typeName", typeName));
}

DDS_ReturnCode_t DDS_DataWriter_write_untypedI(DDS_DataWriter* self, const void* sample,
                                               const DDS_WriteParams_t* params) {
    return dds::call(__func__, self, &dds::DataWriter::write, dds::required("sample", sample),
                     params);
}

DDS_ReturnCode_t DDS_DataWriter_dispose_untypedI(DDS_DataWriter* self, const void* sample,
                                                 const DDS_WriteParams_t* params) {
    return dds::call(__func__, self, &dds::DataWriter::dispose, sample, params);
}

DDS_InstanceHandle_t DDS_DataWriter_register_instance_untypedI(DDS_DataWriter* self,
                                                               const void* sample,
                                                               const DDS_WriteParams_t* params) {
    return dds::call(__func__, self, &dds::DataWriter::register_instance,
                     dds::required("sample", sample), params);
}

DDS_ReturnCode_t DDS_DataWriter_unregister_instance_untypedI(DDS_DataWriter* self,
                                                             const void* sample,
                                                             const DDS_WriteParams_t* params) {
    return dds::call(__func__, self, &dds::DataWriter::unregister_instance, sample, params);
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
    return dds::call(__func__, self, &dds::DataWriter::wait_for_acknowledgments,
                     dds::required("maxWait", maxWait));
}

DDS_ReturnCode_t DDS_DataWriter_flush(DDS_DataWriter* self) {
    return dds::call(__func__, self, &dds::DataWriter::flush);
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
    return dds::call(__func__, self, &dds::DataWriter::get_matched_subscriptions,
                     dds::required("handles", handles));
}

#include "platform/dds/domain/participant.hpp"
#include "platform/dds/domain/subscriber.hpp"
#include "platform/dds/endpoints/reader.hpp"

namespace dds = pexa::dds;

DDS_ReturnCode_t DDS_Subscriber_get_qos(DDS_Subscriber* self, DDS_SubscriberQos* qos) {
    return dds::call(__func__, self, &dds::Subscriber::get_qos, dds::required("qos", qos));
}

DDS_ReturnCode_t DDS_Subscriber_set_qos(DDS_Subscriber* self, const DDS_SubscriberQos* qos) {
    return dds::call(__func__, self, &dds::Subscriber::set_qos, qos);
}

DDS_ReturnCode_t DDS_Subscriber_set_listener(DDS_Subscriber* self,
                                             const DDS_SubscriberListener* listener,
                                             DDS_StatusMask mask) {
    return dds::call(__func__, self, &dds::Subscriber::set_listener,
                     dds::ListenerSetting(listener, mask));
}

DDS_DataReader* DDS_Subscriber_create_datareader(DDS_Subscriber* self, DDS_TopicDescription* topic,
                                                 const DDS_DataReaderQos* qos,
                                                 const DDS_DataReaderListener* listener,
                                                 DDS_StatusMask mask) {
    return dds::call(__func__, self, &dds::Subscriber::create_reader, dds::required("topic", topic),
                     qos, listener, mask);
}

DDS_ReturnCode_t DDS_Subscriber_delete_datareader(DDS_Subscriber* self, DDS_DataReader* reader) {
    return dds::call(__func__, self, &dds::Subscriber::delete_reader, dds::required(reader));
}

DDS_DataReader* DDS_Subscriber_lookup_datareader(DDS_Subscriber* self, const char* topicName) {
    return dds::call(__func__, self, &dds::Subscriber::find_reader,
                     dds::required("topicName", topicName));
}

DDS_ReturnCode_t DDS_Subscriber_delete_contained_entities(DDS_Subscriber* self) {
    return dds::call(__func__, self, &dds::Subscriber::delete_contained);
}

DDS_ReturnCode_t DDS_Subscriber_get_default_datareader_qos(DDS_Subscriber* self,
                                                           DDS_DataReaderQos* qos) {
    return dds::call(__func__, self, &dds::Subscriber::get_default_reader_qos,
                     dds::required("qos", qos));
}

DDS_ReturnCode_t DDS_Subscriber_set_default_datareader_qos(DDS_Subscriber* self,
                                                           const DDS_DataReaderQos* qos) {
    return dds::call(__func__, self, &dds::Subscriber::set_default_reader_qos, qos);
}

DDS_DomainParticipant* DDS_Subscriber_get_participant(DDS_Subscriber* self) {
    return dds::call(__func__, self, &dds::Subscriber::participant);
}

DDS_ReturnCode_t DDS_DataReader_get_qos(DDS_DataReader* self, DDS_DataReaderQos* qos) {
    return dds::call(__func__, self, &dds::DataReader::get_qos, dds::required("qos", qos));
}

DDS_ReturnCode_t DDS_DataReader_set_qos(DDS_DataReader* self, const DDS_DataReaderQos* qos) {
    return dds::call(__func__, self, &dds::DataReader::set_qos, qos);
}

DDS_ReturnCode_t DDS_DataReader_set_listener(DDS_DataReader* self,
                                             const DDS_DataReaderListener* listener,
                                             DDS_StatusMask mask) {
    return dds::call(__func__, self, &dds::DataReader::set_listener,
                     dds::ListenerSetting(listener, mask));
}

DDS_TopicDescription* DDS_DataReader_get_topicdescription(DDS_DataReader* self) {
    return dds::call(__func__, self, &dds::DataReader::topic);
}

DDS_Subscriber* DDS_DataReader_get_subscriber(DDS_DataReader* self) {
    return dds::call(__func__, self, &dds::DataReader::subscriber);
}

DDS_Boolean DDS_DataReader_compare_typeI(DDS_DataReader* self, const char* typeName) {
    return dds::call(__func__, self, &dds::DataReader::is_of_type,
                     dds::required("typeName", typeName));
}

DDS_ReturnCode_t DDS_DataReader_read_or_take_untypedI(DDS_DataReader* self,
                                                      const DDS_ReadSelectorI* selector,
                                                      DDS_UntypedSampleSeqI* data,
                                                      DDS_SampleInfoSeq* infos) {
    return dds::call(__func__, self, &dds::DataReader::read_or_take,
                     dds::required("selector", selector), dds::required("data", data),
                     dds::required("infos", infos));
}

DDS_ReturnCode_t DDS_DataReader_read_or_take_next_sample_untypedI(DDS_DataReader* self,
                                                                  void* sample,
                                                                  DDS_SampleInfo* info,
                                                                  DDS_Boolean take) {
    return dds::call(__func__, self, &dds::DataReader::read_or_take_next_sample,
                     dds::required("sample", sample), dds::required("info", info), take);
}

DDS_ReturnCode_t DDS_DataReader_return_loan_untypedI(DDS_DataReader* self, void** loanedSamples,
                                                     DDS_Long count, DDS_SampleInfoSeq* infos) {
    return dds::call(__func__, self, &dds::DataReader::return_loan, loanedSamples, count,
                     dds::required("infos", infos));
}

DDS_ReturnCode_t DDS_DataReader_get_key_value_untypedI(DDS_DataReader* self, void* sample,
                                                       const DDS_InstanceHandle_t* handle) {
    return dds::call(__func__, self, &dds::DataReader::get_key_value,
                     dds::required("sample", sample), dds::required("handle", handle));
}

DDS_InstanceHandle_t DDS_DataReader_lookup_instance_untypedI(DDS_DataReader* self,
                                                             const void* sample) {
    return dds::call(__func__, self, &dds::DataReader::lookup_instance,
                     dds::required("sample", sample));
}

DDS_ReturnCode_t DDS_DataReader_add_sample_to_remote_writer_queue_untypedI(DDS_DataReader* self,
                                                                           const void* sample) {
    return dds::call(
        __func__, self, [](dds::DataReader&, const void*) { return DDS_RETCODE_UNSUPPORTED; },
        dds::required("sample", sample));
}

DDS_ReturnCode_t DDS_DataReader_wait_for_historical_data(DDS_DataReader* self,
                                                         const DDS_Duration_t* maxWait) {
    return dds::call(__func__, self, &dds::DataReader::wait_for_historical_data,
                     dds::required("maxWait", maxWait));
}

DDS_ReturnCode_t DDS_DataReader_get_subscription_matched_status(
    DDS_DataReader* self, DDS_SubscriptionMatchedStatus* status) {
    return dds::call(__func__, self, &dds::DataReader::get_status<DDS_SubscriptionMatchedStatus>,
                     dds::required("status", status));
}

DDS_ReturnCode_t DDS_DataReader_get_sample_lost_status(DDS_DataReader* self,
                                                       DDS_SampleLostStatus* status) {
    return dds::call(__func__, self, &dds::DataReader::get_status<DDS_SampleLostStatus>,
                     dds::required("status", status));
}

DDS_ReturnCode_t DDS_DataReader_get_sample_rejected_status(DDS_DataReader* self,
                                                           DDS_SampleRejectedStatus* status) {
    return dds::call(__func__, self, &dds::DataReader::get_status<DDS_SampleRejectedStatus>,
                     dds::required("status", status));
}

DDS_ReturnCode_t DDS_DataReader_get_liveliness_changed_status(DDS_DataReader* self,
                                                              DDS_LivelinessChangedStatus* status) {
    return dds::call(__func__, self, &dds::DataReader::get_status<DDS_LivelinessChangedStatus>,
                     dds::required("status", status));
}

DDS_ReturnCode_t DDS_DataReader_get_requested_deadline_missed_status(
    DDS_DataReader* self, DDS_RequestedDeadlineMissedStatus* status) {
    return dds::call(__func__, self,
                     &dds::DataReader::get_status<DDS_RequestedDeadlineMissedStatus>,
                     dds::required("status", status));
}

DDS_ReturnCode_t DDS_DataReader_get_requested_incompatible_qos_status(
    DDS_DataReader* self, DDS_RequestedIncompatibleQosStatus* status) {
    return dds::call(__func__, self,
                     &dds::DataReader::get_status<DDS_RequestedIncompatibleQosStatus>,
                     dds::required("status", status));
}

DDS_ReturnCode_t DDS_DataReader_get_matched_publications(DDS_DataReader* self,
                                                         DDS_InstanceHandleSeq* handles) {
    return dds::call(__func__, self, &dds::DataReader::get_matched_publications,
                     dds::required("handles", handles));
}

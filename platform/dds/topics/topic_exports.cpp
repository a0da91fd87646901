#include "platform/dds/domain/participant.hpp"
#include "platform/dds/topics/filtered_topic.hpp"
#include "platform/dds/topics/topic.hpp"

namespace dds = pexa::dds;

DDS_Topic* DDS_Topic_narrow(DDS_TopicDescription* description) {
    return dds::call(__func__, description, &dds::TopicDescription::as_topic);
}

DDS_TopicDescription* DDS_Topic_as_topicdescription(DDS_Topic* self) {
    return dds::call(__func__, self, &dds::Topic::as_description);
}

DDS_TopicDescription* DDS_ContentFilteredTopic_as_topicdescription(DDS_ContentFilteredTopic* self) {
    return dds::call(__func__, self, &dds::FilteredTopic::as_description);
}

const char* DDS_TopicDescription_get_name(DDS_TopicDescription* self) {
    return dds::call(__func__, self, &dds::TopicDescription::name);
}

const char* DDS_TopicDescription_get_type_name(DDS_TopicDescription* self) {
    return dds::call(__func__, self, &dds::TopicDescription::type_name);
}

DDS_DomainParticipant* DDS_TopicDescription_get_participant(DDS_TopicDescription* self) {
    return dds::call(__func__, self, &dds::TopicDescription::participant);
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

const char* DDS_ContentFilteredTopic_get_filter_expression(DDS_ContentFilteredTopic* self) {
    return dds::call(__func__, self, &dds::FilteredTopic::expression);
}

DDS_ReturnCode_t DDS_ContentFilteredTopic_get_expression_parameters(DDS_ContentFilteredTopic* self,
                                                                    DDS_StringSeq* parameters) {
    return dds::call(__func__, self, &dds::FilteredTopic::get_parameters,
                     dds::required("parameters", parameters));
}

DDS_ReturnCode_t DDS_ContentFilteredTopic_set_expression_parameters(
    DDS_ContentFilteredTopic* self, const DDS_StringSeq* parameters) {
    return dds::call(__func__, self, &dds::FilteredTopic::set_parameters, parameters);
}

DDS_Topic* DDS_ContentFilteredTopic_get_related_topic(DDS_ContentFilteredTopic* self) {
    return dds::call(__func__, self, &dds::FilteredTopic::related_topic);
}

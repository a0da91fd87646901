#include "platform/dds/domain/participant.hpp"
#include "platform/dds/domain/publisher.hpp"
#include "platform/dds/domain/subscriber.hpp"
#include "platform/dds/endpoints/reader.hpp"
#include "platform/dds/endpoints/writer.hpp"
#include "platform/dds/topics/topic.hpp"

namespace dds = pexa::dds;

DDS_ReturnCode_t DDS_Entity_enable(DDS_Entity* self) {
    return dds::call(__func__, self, &dds::Entity::enable);
}

DDS_Boolean DDS_Entity_is_enabled(DDS_Entity* self) {
    return dds::call(__func__, self, &dds::Entity::enabled);
}

DDS_StatusMask DDS_Entity_get_status_changes(DDS_Entity* self) {
    return dds::call(__func__, self, &dds::Entity::status_changes);
}

DDS_InstanceHandle_t DDS_Entity_get_instance_handle(DDS_Entity* self) {
    return dds::call(__func__, self, &dds::Entity::instance_handle);
}

DDS_StatusCondition* DDS_Entity_get_statuscondition(DDS_Entity* self) {
    return dds::call(__func__, self, &dds::Entity::status_condition);
}

DDS_Entity* DDS_DomainParticipant_as_entity(DDS_DomainParticipant* self) {
    return dds::call(__func__, self, &dds::Participant::as_entity);
}

DDS_Entity* DDS_Topic_as_entity(DDS_Topic* self) {
    return dds::call(__func__, self, &dds::Topic::as_entity);
}

DDS_Entity* DDS_Publisher_as_entity(DDS_Publisher* self) {
    return dds::call(__func__, self, &dds::Publisher::as_entity);
}

DDS_Entity* DDS_Subscriber_as_entity(DDS_Subscriber* self) {
    return dds::call(__func__, self, &dds::Subscriber::as_entity);
}

DDS_Entity* DDS_DataWriter_as_entity(DDS_DataWriter* self) {
    return dds::call(__func__, self, &dds::DataWriter::as_entity);
}

DDS_Entity* DDS_DataReader_as_entity(DDS_DataReader* self) {
    return dds::call(__func__, self, &dds::DataReader::as_entity);
}

#include "pexa/qos.h"

#include "platform/dds/interface/operation.hpp"
#include "platform/dds/qos/conversion.hpp"

namespace pexa::dds {
namespace {

template <typename Record>
Status initialize(const char* operation, Record* self) {
    if (self == nullptr) {
        return Operation(operation).bad_parameter("self");
    }
    qos_record::initialize(policies_of<Record>(), self);
    return Status::ok;
}

template <typename Record>
Status copy(const char* operation, Record* self, const Record* from) {
    if (self == nullptr) {
        return Operation(operation).bad_parameter("self");
    }
    if (from == nullptr) {
        return Operation(operation).bad_parameter("from");
    }
    return self == from ? Status::ok : qos_record::copy(policies_of<Record>(), self, from);
}

template <typename Record>
Status finalize(const char* operation, Record* self) {
    if (self == nullptr) {
        return Operation(operation).bad_parameter("self");
    }
    qos_record::finalize(policies_of<Record>(), self);
    return Status::ok;
}

}  // namespace
}  // namespace pexa::dds

#define PEXA_DEFINE_QOS_OPERATIONS(Qos)                                              \
    DDS_ReturnCode_t Qos##_initialize(Qos* self) {                                   \
        return pexa::dds::exported(pexa::dds::initialize(#Qos "_initialize", self)); \
    }                                                                                \
    DDS_ReturnCode_t Qos##_copy(Qos* self, const Qos* from) {                        \
        return pexa::dds::exported(pexa::dds::copy(#Qos "_copy", self, from));       \
    }                                                                                \
    DDS_ReturnCode_t Qos##_finalize(Qos* self) {                                     \
        return pexa::dds::exported(pexa::dds::finalize(#Qos "_finalize", self));     \
    }

extern "C" {
PEXA_DEFINE_QOS_OPERATIONS(DDS_DomainParticipantFactoryQos)
PEXA_DEFINE_QOS_OPERATIONS(DDS_DomainParticipantQos)
PEXA_DEFINE_QOS_OPERATIONS(DDS_TopicQos)
PEXA_DEFINE_QOS_OPERATIONS(DDS_PublisherQos)
PEXA_DEFINE_QOS_OPERATIONS(DDS_SubscriberQos)
PEXA_DEFINE_QOS_OPERATIONS(DDS_DataWriterQos)
PEXA_DEFINE_QOS_OPERATIONS(DDS_DataReaderQos)
}

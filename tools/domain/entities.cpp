#include "tools/domain/entities.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <thread>

#include "tools/text/display_text.hpp"

namespace orvane::tools {
namespace {

/// The standard output belongs to what was asked for.
void write_to_standard_error(const PEXA_Config_LoggerDevice* /*device*/,
                             const PEXA_Config_LogMessage* message) {
    std::string line = "orvane: ";
    append_displayable(line, message->text);
    line += '\n';
    std::fputs(line.c_str(), stderr);
}

constexpr PEXA_Config_LoggerDevice standard_error{nullptr, write_to_standard_error, nullptr};

DDS_Topic* create_topic(DDS_DomainParticipant* participant, const TopicNames& names) {
    return DDS_DomainParticipant_create_topic(participant, names.topic, names.type, DDS_QOS_DEFAULT,
                                              nullptr, DDS_STATUS_MASK_NONE);
}

std::uint32_t big_endian(const DDS_Octet* bytes) {
    return std::uint32_t{bytes[0]} << 24U | std::uint32_t{bytes[1]} << 16U |
           std::uint32_t{bytes[2]} << 8U | std::uint32_t{bytes[3]};
}

}  // namespace

void delete_with_contents(DDS_DomainParticipant* participant) {
    DDS_DomainParticipant_delete_contained_entities(participant);
    DDS_DomainParticipantFactory_delete_participant(DDS_DomainParticipantFactory_get_instance(),
                                                    participant);
}

Participant join_domain(std::int32_t domain_id) {
    PEXA_Config_Logger_set_output_device(PEXA_Config_Logger_get_instance(), &standard_error);
    return Participant{DDS_DomainParticipantFactory_create_participant(
        DDS_DomainParticipantFactory_get_instance(), domain_id, DDS_QOS_DEFAULT, nullptr,
        DDS_STATUS_MASK_NONE)};
}

Application identity_of(DDS_DomainParticipant* participant) {
    DDS_DomainParticipantQos qos;
    DDS_DomainParticipantQos_initialize(&qos);
    DDS_DomainParticipant_get_qos(participant, &qos);
    const Application identity{qos.wire_protocol.rtps_host_id, qos.wire_protocol.rtps_app_id};
    DDS_DomainParticipantQos_finalize(&qos);
    return identity;
}

Application application_of(const QEL_KX_HostAndAppId& identity) {
    return {static_cast<std::uint32_t>(identity.rtps_host_id),
            static_cast<std::uint32_t>(identity.rtps_app_id)};
}

Application application_of(const DDS_InstanceHandle_t& endpoint) {
    const DDS_Octet* guid = endpoint.keyHash.value;
    return {big_endian(guid), big_endian(guid + 4)};
}

DDS_DataReader* create_reader(DDS_DomainParticipant* participant, const TopicNames& names,
                              DDS_DurabilityQosPolicyKind durability,
                              DDS_HistoryQosPolicyKind history) {
    DDS_Topic* topic = create_topic(participant, names);
    DDS_Subscriber* subscriber = DDS_DomainParticipant_create_subscriber(
        participant, DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
    if (topic == nullptr || subscriber == nullptr) {
        return nullptr;
    }
    DDS_DataReaderQos qos;
    DDS_DataReaderQos_initialize(&qos);
    qos.reliability.kind = DDS_RELIABLE_RELIABILITY_QOS;
    qos.durability.kind = durability;
    qos.history.kind = history;
    DDS_DataReader* reader = DDS_Subscriber_create_datareader(
        subscriber, DDS_Topic_as_topicdescription(topic), &qos, nullptr, DDS_STATUS_MASK_NONE);
    DDS_DataReaderQos_finalize(&qos);
    return reader;
}

DDS_DataWriter* create_writer(DDS_DomainParticipant* participant, const TopicNames& names) {
    DDS_Topic* topic = create_topic(participant, names);
    DDS_Publisher* publisher = DDS_DomainParticipant_create_publisher(
        participant, DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
    if (topic == nullptr || publisher == nullptr) {
        return nullptr;
    }
    DDS_DataWriterQos qos;
    DDS_DataWriterQos_initialize(&qos);
    qos.reliability.kind = DDS_RELIABLE_RELIABILITY_QOS;
    qos.history.kind = DDS_KEEP_ALL_HISTORY_QOS;
    DDS_DataWriter* writer =
        DDS_Publisher_create_datawriter(publisher, topic, &qos, nullptr, DDS_STATUS_MASK_NONE);
    DDS_DataWriterQos_finalize(&qos);
    return writer;
}

bool Wakeup::open() {
    interrupted_.reset(DDS_GuardCondition_new());
    wait_set_.reset(DDS_WaitSet_new());
    return interrupted_ && wait_set_ && attach(DDS_GuardCondition_as_condition(interrupted_.get()));
}

bool Wakeup::on_data(DDS_DataReader* reader) {
    DDS_ReadCondition* arrived = DDS_DataReader_create_readcondition(
        reader, DDS_ANY_SAMPLE_STATE, DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE);
    return arrived != nullptr && attach(DDS_ReadCondition_as_condition(arrived));
}

bool Wakeup::on_status(DDS_Entity* entity, DDS_StatusMask statuses) {
    DDS_StatusCondition* changed = DDS_Entity_get_statuscondition(entity);
    return DDS_StatusCondition_set_enabled_statuses(changed, statuses) == DDS_RETCODE_OK &&
           attach(DDS_StatusCondition_as_condition(changed));
}

bool Wakeup::attach(DDS_Condition* condition) {
    return DDS_WaitSet_attach_condition(wait_set_.get(), condition) == DDS_RETCODE_OK;
}

void Wakeup::wait(std::chrono::milliseconds longest) {
    const auto count = std::max<std::int64_t>(longest.count(), 0);
    const DDS_Duration_t timeout{static_cast<DDS_Long>(count / 1000),
                                 static_cast<DDS_UnsignedLong>(count % 1000 * 1'000'000)};
    DDS_ConditionSeq active{};
    const DDS_ReturnCode_t result = DDS_WaitSet_wait(wait_set_.get(), &active, &timeout);
    DDS_ConditionSeq_finalize(&active);
    if (result != DDS_RETCODE_OK && result != DDS_RETCODE_TIMEOUT) {
        // A wait that cannot even begin must not make its loop a busy one.
        std::this_thread::sleep_for(std::min(longest, std::chrono::milliseconds{100}));
    }
}

void Wakeup::interrupt() {
    DDS_GuardCondition_set_trigger_value(interrupted_.get(), DDS_BOOLEAN_TRUE);
}

}  // namespace orvane::tools

#include "tools/domain/entities.hpp"

#include <string>
#include <vector>

#include "tools/domain/middleware_output.hpp"
#include "tools/security/credentials.hpp"

namespace orvane::tools {
namespace {

/// Adds the properties to those that are there, or puts them in their places.
Status set_properties(DDS_PropertySeq& properties, const std::vector<SecurityProperty>& wanted) {
    for (const SecurityProperty& each : wanted) {
        const DDS_Long count = DDS_PropertySeq_get_length(&properties);
        DDS_Long place = 0;
        while (place < count &&
               each.name != DDS_PropertySeq_get_reference(&properties, place)->name) {
            ++place;
        }
        if (place == count &&
            DDS_PropertySeq_ensure_length(&properties, count + 1, count + 1) == 0) {
            return Status::failed;
        }
        DDS_Property_t& property = *DDS_PropertySeq_get_reference(&properties, place);
        if (DDS_String_replace(&property.name, each.name.c_str()) == nullptr ||
            DDS_String_replace(&property.value, each.value.c_str()) == nullptr) {
            return Status::failed;
        }
    }
    return Status::ok;
}

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

Participant join_domain(const DomainOptions& domain) {
    print_middleware_reports();
    DDS_DomainParticipantFactory* factory = DDS_DomainParticipantFactory_get_instance();
    const auto create = [&](const DDS_DomainParticipantQos* qos) {
        return Participant{DDS_DomainParticipantFactory_create_participant(
            factory, domain.id, qos, nullptr, DDS_STATUS_MASK_NONE)};
    };
    if (domain.security.empty()) {
        return create(DDS_QOS_DEFAULT);
    }
    DDS_DomainParticipantQos qos;
    DDS_DomainParticipantQos_initialize(&qos);
    Participant participant;
    if (DDS_DomainParticipantFactory_get_default_participant_qos(factory, &qos) == DDS_RETCODE_OK &&
        set_properties(qos.property.value, security_properties(domain.security)) == Status::ok) {
        participant = create(&qos);
    }
    DDS_DomainParticipantQos_finalize(&qos);
    return participant;
}

Application identity_of(DDS_DomainParticipant* participant) {
    DDS_DomainParticipantQos qos;
    DDS_DomainParticipantQos_initialize(&qos);
    DDS_DomainParticipant_get_qos(participant, &qos);
    const Application identity{qos.wire_protocol.rtps_host_id, qos.wire_protocol.rtps_app_id,
                               qos.wire_protocol.rtps_instance_id};
    DDS_DomainParticipantQos_finalize(&qos);
    return identity;
}

Application application_of(const QEL_KX_HostAndAppId& identity) {
    return {static_cast<std::uint32_t>(identity.rtps_host_id),
            static_cast<std::uint32_t>(identity.rtps_app_id)};
}

Application application_of(const QEL_KX_HostAndAppId& identity, const Endpoint& writer) {
    const Application named = application_of(identity);
    const Application publisher = application_of(writer);
    return share_host_and_app(named, publisher) ? publisher : named;
}

QEL_KX_HostAndAppId to_identity(const Application& application) {
    return {static_cast<DDS_Long>(application.host_id), static_cast<DDS_Long>(application.app_id)};
}

std::int64_t nanoseconds_of(const DDS_Time_t& time) {
    return time.sec * std::int64_t{1'000'000'000} + time.nanosec;
}

Endpoint endpoint_of(const DDS_InstanceHandle_t& handle) {
    const DDS_Octet* guid = handle.keyHash.value;
    return {{big_endian(guid), big_endian(guid + 4), big_endian(guid + 8), big_endian(guid + 12)}};
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

DDS_DataWriter* create_writer(DDS_DomainParticipant* participant, const TopicNames& names,
                              const WriterPolicies& policies) {
    DDS_Topic* topic = create_topic(participant, names);
    DDS_Publisher* publisher = DDS_DomainParticipant_create_publisher(
        participant, DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
    if (topic == nullptr || publisher == nullptr) {
        return nullptr;
    }
    DDS_DataWriterQos qos;
    DDS_DataWriterQos_initialize(&qos);
    qos.reliability.kind = DDS_RELIABLE_RELIABILITY_QOS;
    qos.history.kind = policies.history;
    if (policies.kept_for_late_readers) {
        qos.durability.kind = DDS_TRANSIENT_LOCAL_DURABILITY_QOS;
        qos.durability_service.history_depth = *policies.kept_for_late_readers;
    }
    qos.batch.enable = policies.batches ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
    DDS_DataWriter* writer =
        DDS_Publisher_create_datawriter(publisher, topic, &qos, nullptr, DDS_STATUS_MASK_NONE);
    DDS_DataWriterQos_finalize(&qos);
    return writer;
}

}  // namespace orvane::tools

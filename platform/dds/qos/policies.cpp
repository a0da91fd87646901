#include "platform/dds/qos/policies.hpp"

#include "platform/dds/interface/member_of.hpp"
#include "platform/dds/qos/owned_policies.hpp"
#include "platform/dds/qos/plain_policies.hpp"

namespace pexa::dds {
namespace {

template <typename Policy>
constexpr PolicyOperations plain_operations{
    PlainPolicyOperations<Policy>::initialize, PlainPolicyOperations<Policy>::copy,
    PlainPolicyOperations<Policy>::finalize,   PlainPolicyOperations<Policy>::equal,
    PlainPolicyOperations<Policy>::fault,      PlainPolicyOperations<Policy>::to_engine,
    PlainPolicyOperations<Policy>::from_engine};

template <auto Member>
void* locate(void* record) {
    return &(static_cast<typename MemberOf<Member>::Record*>(record)->*Member);
}

/// Rows of all records can be written alike, because members of the same name have the same type.
template <auto Member>
constexpr PolicyRow row(const char* name, Change change, const PolicyOperations& operations) {
    return {name, change, &operations, locate<Member>};
}

template <auto Member>
constexpr PolicyRow row(const char* name, Change change) {
    return {name, change, &plain_operations<typename MemberOf<Member>::Type>, locate<Member>};
}

using enum Change;

using FactoryQos = DDS_DomainParticipantFactoryQos;
constexpr PolicyRow factory_rows[] = {
    row<&FactoryQos::entity_factory>("entity_factory", always, entity_factory_operations),
};

using ParticipantQos = DDS_DomainParticipantQos;
constexpr PolicyRow participant_rows[] = {
    row<&ParticipantQos::user_data>("user_data", always, user_data_operations),
    row<&ParticipantQos::entity_factory>("entity_factory", always, entity_factory_operations),
    row<&ParticipantQos::wire_protocol>("wire_protocol", never, wire_protocol_operations),
    row<&ParticipantQos::participant_name>("participant_name", until_enabled,
                                           entity_name_operations),
    row<&ParticipantQos::property>("property", until_enabled, property_operations),
};

using TopicQos = DDS_TopicQos;
constexpr PolicyRow topic_rows[] = {
    row<&TopicQos::topic_data>("topic_data", always, topic_data_operations),
    row<&TopicQos::durability>("durability", until_enabled),
    row<&TopicQos::durability_service>("durability_service", until_enabled),
    row<&TopicQos::deadline>("deadline", always),
    row<&TopicQos::latency_budget>("latency_budget", always),
    row<&TopicQos::liveliness>("liveliness", until_enabled),
    row<&TopicQos::reliability>("reliability", until_enabled),
    row<&TopicQos::destination_order>("destination_order", until_enabled),
    row<&TopicQos::history>("history", until_enabled),
    row<&TopicQos::resource_limits>("resource_limits", until_enabled),
    row<&TopicQos::transport_priority>("transport_priority", always),
    row<&TopicQos::lifespan>("lifespan", always),
    row<&TopicQos::ownership>("ownership", until_enabled),
};

using PublisherQos = DDS_PublisherQos;
constexpr PolicyRow publisher_rows[] = {
    row<&PublisherQos::presentation>("presentation", until_enabled),
    row<&PublisherQos::partition>("partition", always, partition_operations),
    row<&PublisherQos::group_data>("group_data", always, group_data_operations),
    row<&PublisherQos::entity_factory>("entity_factory", always, entity_factory_operations),
};

using SubscriberQos = DDS_SubscriberQos;
constexpr PolicyRow subscriber_rows[] = {
    row<&SubscriberQos::presentation>("presentation", until_enabled),
    row<&SubscriberQos::partition>("partition", always, partition_operations),
    row<&SubscriberQos::group_data>("group_data", always, group_data_operations),
    row<&SubscriberQos::entity_factory>("entity_factory", always, entity_factory_operations),
};

using WriterQos = DDS_DataWriterQos;
constexpr PolicyRow writer_rows[] = {
    row<&WriterQos::durability>("durability", until_enabled),
    row<&WriterQos::durability_service>("durability_service", until_enabled),
    row<&WriterQos::deadline>("deadline", always),
    row<&WriterQos::latency_budget>("latency_budget", always),
    row<&WriterQos::liveliness>("liveliness", until_enabled),
    row<&WriterQos::reliability>("reliability", until_enabled),
    row<&WriterQos::destination_order>("destination_order", until_enabled),
    row<&WriterQos::history>("history", until_enabled),
    row<&WriterQos::resource_limits>("resource_limits", until_enabled),
    row<&WriterQos::transport_priority>("transport_priority", always),
    row<&WriterQos::lifespan>("lifespan", always),
    row<&WriterQos::user_data>("user_data", always, user_data_operations),
    row<&WriterQos::ownership>("ownership", until_enabled),
    row<&WriterQos::ownership_strength>("ownership_strength", always),
    row<&WriterQos::writer_data_lifecycle>("writer_data_lifecycle", always),
    row<&WriterQos::batch>("batch", until_enabled),
};

using ReaderQos = DDS_DataReaderQos;
constexpr PolicyRow reader_rows[] = {
    row<&ReaderQos::durability>("durability", until_enabled),
    row<&ReaderQos::deadline>("deadline", always),
    row<&ReaderQos::latency_budget>("latency_budget", always),
    row<&ReaderQos::liveliness>("liveliness", until_enabled),
    row<&ReaderQos::reliability>("reliability", until_enabled),
    row<&ReaderQos::destination_order>("destination_order", until_enabled),
    row<&ReaderQos::history>("history", until_enabled),
    row<&ReaderQos::resource_limits>("resource_limits", until_enabled),
    row<&ReaderQos::user_data>("user_data", always, user_data_operations),
    row<&ReaderQos::ownership>("ownership", until_enabled),
    row<&ReaderQos::time_based_filter>("time_based_filter", always),
    row<&ReaderQos::reader_data_lifecycle>("reader_data_lifecycle", always),
};

const char* no_contradiction(const void*) {
    return nullptr;
}

template <typename Record>
const char* history_contradiction(const void* record) {
    const auto& qos = *static_cast<const Record*>(record);
    return fits(qos.history, qos.resource_limits)
               ? nullptr
               : "history.depth above resource_limits.max_samples_per_instance";
}

const char* reader_contradiction(const void* record) {
    const auto& qos = *static_cast<const ReaderQos*>(record);
    if (to_nanoseconds(qos.deadline.period) <
        to_nanoseconds(qos.time_based_filter.minimum_separation)) {
        return "deadline.period below time_based_filter.minimum_separation";
    }
    return history_contradiction<ReaderQos>(record);
}

void keep_defaults(void*) {}

void make_reliable(void* record) {
    static_cast<WriterQos*>(record)->reliability.kind = DDS_RELIABLE_RELIABILITY_QOS;
}

constexpr PolicyTable factory_table{"DDS_DomainParticipantFactoryQos", factory_rows, keep_defaults,
                                    no_contradiction};
constexpr PolicyTable participant_table{"DDS_DomainParticipantQos", participant_rows, keep_defaults,
                                        no_contradiction};
constexpr PolicyTable topic_table{"DDS_TopicQos", topic_rows, keep_defaults,
                                  history_contradiction<TopicQos>};
constexpr PolicyTable publisher_table{"DDS_PublisherQos", publisher_rows, keep_defaults,
                                      no_contradiction};
constexpr PolicyTable subscriber_table{"DDS_SubscriberQos", subscriber_rows, keep_defaults,
                                       no_contradiction};
constexpr PolicyTable writer_table{"DDS_DataWriterQos", writer_rows, make_reliable,
                                   history_contradiction<WriterQos>};
constexpr PolicyTable reader_table{"DDS_DataReaderQos", reader_rows, keep_defaults,
                                   reader_contradiction};

}  // namespace

template <>
const PolicyTable& policies_of<DDS_DomainParticipantFactoryQos>() {
    return factory_table;
}
template <>
const PolicyTable& policies_of<DDS_DomainParticipantQos>() {
    return participant_table;
}
template <>
const PolicyTable& policies_of<DDS_TopicQos>() {
    return topic_table;
}
template <>
const PolicyTable& policies_of<DDS_PublisherQos>() {
    return publisher_table;
}
template <>
const PolicyTable& policies_of<DDS_SubscriberQos>() {
    return subscriber_table;
}
template <>
const PolicyTable& policies_of<DDS_DataWriterQos>() {
    return writer_table;
}
template <>
const PolicyTable& policies_of<DDS_DataReaderQos>() {
    return reader_table;
}

}  // namespace pexa::dds

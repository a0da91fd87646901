#include "platform/dds/qos/policies.hpp"

#include "platform/dds/qos/policy_members.hpp"

namespace pexa::dds {
namespace {

template <typename Record>
constexpr Policy policy_of{policy_tables::rows_of<Record>.change,
                           policy_tables::rows_of<Record>.members,
                           policy_tables::rows_of<Record>.contradiction};

/// A row that still knows its member.
template <auto Pointer>
struct TypedRow {
    static constexpr auto pointer = Pointer;
    PolicyRow row;
};

template <auto Pointer>
constexpr TypedRow<Pointer> row(const char* name) {
    using Record = ValueOfMember<Pointer>;
    static_assert(
        std::is_same_v<typename decltype(policy_tables::rows_of<Record>)::Record, Record>);
    return {{name, &policy_of<Record>, locate_member<Pointer>}};
}

/// The rows of a record. A policy without its row does not compile.
template <typename First, typename... Others>
struct RecordRows {
    constexpr explicit RecordRows(First first, Others... others) : rows{first.row, others.row...} {
        static_assert(
            covers_record<RecordOfMember<First::pointer>, First::pointer, Others::pointer...>);
    }
    std::array<PolicyRow, 1 + sizeof...(Others)> rows;
};

using FactoryQos = DDS_DomainParticipantFactoryQos;
constexpr RecordRows factory_rows{
    row<&FactoryQos::entity_factory>("entity_factory"),
};

using ParticipantQos = DDS_DomainParticipantQos;
constexpr RecordRows participant_rows{
    row<&ParticipantQos::user_data>("user_data"),
    row<&ParticipantQos::entity_factory>("entity_factory"),
    row<&ParticipantQos::wire_protocol>("wire_protocol"),
    row<&ParticipantQos::participant_name>("participant_name"),
    row<&ParticipantQos::property>("property"),
};

using TopicQos = DDS_TopicQos;
constexpr RecordRows topic_rows{
    row<&TopicQos::topic_data>("topic_data"),
    row<&TopicQos::durability>("durability"),
    row<&TopicQos::durability_service>("durability_service"),
    row<&TopicQos::deadline>("deadline"),
    row<&TopicQos::latency_budget>("latency_budget"),
    row<&TopicQos::liveliness>("liveliness"),
    row<&TopicQos::reliability>("reliability"),
    row<&TopicQos::destination_order>("destination_order"),
    row<&TopicQos::history>("history"),
    row<&TopicQos::resource_limits>("resource_limits"),
    row<&TopicQos::transport_priority>("transport_priority"),
    row<&TopicQos::lifespan>("lifespan"),
    row<&TopicQos::ownership>("ownership"),
};

using PublisherQos = DDS_PublisherQos;
constexpr RecordRows publisher_rows{
    row<&PublisherQos::presentation>("presentation"),
    row<&PublisherQos::partition>("partition"),
    row<&PublisherQos::group_data>("group_data"),
    row<&PublisherQos::entity_factory>("entity_factory"),
};

using SubscriberQos = DDS_SubscriberQos;
constexpr RecordRows subscriber_rows{
    row<&SubscriberQos::presentation>("presentation"),
    row<&SubscriberQos::partition>("partition"),
    row<&SubscriberQos::group_data>("group_data"),
    row<&SubscriberQos::entity_factory>("entity_factory"),
};

using WriterQos = DDS_DataWriterQos;
constexpr RecordRows writer_rows{
    row<&WriterQos::durability>("durability"),
    row<&WriterQos::durability_service>("durability_service"),
    row<&WriterQos::deadline>("deadline"),
    row<&WriterQos::latency_budget>("latency_budget"),
    row<&WriterQos::liveliness>("liveliness"),
    row<&WriterQos::reliability>("reliability"),
    row<&WriterQos::destination_order>("destination_order"),
    row<&WriterQos::history>("history"),
    row<&WriterQos::resource_limits>("resource_limits"),
    row<&WriterQos::transport_priority>("transport_priority"),
    row<&WriterQos::lifespan>("lifespan"),
    row<&WriterQos::user_data>("user_data"),
    row<&WriterQos::ownership>("ownership"),
    row<&WriterQos::ownership_strength>("ownership_strength"),
    row<&WriterQos::writer_data_lifecycle>("writer_data_lifecycle"),
    row<&WriterQos::batch>("batch"),
};

using ReaderQos = DDS_DataReaderQos;
constexpr RecordRows reader_rows{
    row<&ReaderQos::durability>("durability"),
    row<&ReaderQos::deadline>("deadline"),
    row<&ReaderQos::latency_budget>("latency_budget"),
    row<&ReaderQos::liveliness>("liveliness"),
    row<&ReaderQos::reliability>("reliability"),
    row<&ReaderQos::destination_order>("destination_order"),
    row<&ReaderQos::history>("history"),
    row<&ReaderQos::resource_limits>("resource_limits"),
    row<&ReaderQos::user_data>("user_data"),
    row<&ReaderQos::ownership>("ownership"),
    row<&ReaderQos::time_based_filter>("time_based_filter"),
    row<&ReaderQos::reader_data_lifecycle>("reader_data_lifecycle"),
};

template <typename Record>
QosFault history_contradiction(const void* record) {
    const auto& qos = *static_cast<const Record*>(record);
    const bool fit = policy_tables::fits(qos.history.kind, qos.history.depth,
                                         qos.resource_limits.max_samples_per_instance);
    if (fit) {
        return {};
    }
    QosFault fault("history.depth %d is above resource_limits.max_samples_per_instance %d",
                   qos.history.depth, qos.resource_limits.max_samples_per_instance);
    fault.policies = {"history", "resource_limits"};
    return fault;
}

/// A duration as a person writes it.
std::array<char, 32> text_of(const DDS_Duration_t& duration) {
    std::array<char, 32> text{};
    if (duration.sec == DDS_DURATION_INFINITE_SEC) {
        std::snprintf(text.data(), text.size(), "infinite");
    } else if (duration.nanosec == 0) {
        std::snprintf(text.data(), text.size(), "%d s", duration.sec);
    } else {
        std::snprintf(text.data(), text.size(), "%d.%09u s", duration.sec, duration.nanosec);
    }
    return text;
}

QosFault reader_contradiction(const void* record) {
    const auto& qos = *static_cast<const ReaderQos*>(record);
    const DDS_Duration_t& period = qos.deadline.period;
    const DDS_Duration_t& separation = qos.time_based_filter.minimum_separation;
    if (to_nanoseconds(period) < to_nanoseconds(separation)) {
        QosFault fault("deadline.period %s is below time_based_filter.minimum_separation %s",
                       text_of(period).data(), text_of(separation).data());
        fault.policies = {"deadline", "time_based_filter"};
        return fault;
    }
    return history_contradiction<ReaderQos>(record);
}

void keep_defaults(void*) {}

void make_reliable(void* record) {
    static_cast<WriterQos*>(record)->reliability.kind = DDS_RELIABLE_RELIABILITY_QOS;
}

constexpr PolicyTable factory_table{factory_rows.rows, keep_defaults, no_contradiction};
constexpr PolicyTable participant_table{participant_rows.rows, keep_defaults, no_contradiction};
constexpr PolicyTable topic_table{topic_rows.rows, keep_defaults, history_contradiction<TopicQos>};
constexpr PolicyTable publisher_table{publisher_rows.rows, keep_defaults, no_contradiction};
constexpr PolicyTable subscriber_table{subscriber_rows.rows, keep_defaults, no_contradiction};
constexpr PolicyTable writer_table{writer_rows.rows, make_reliable,
                                   history_contradiction<WriterQos>};
constexpr PolicyTable reader_table{reader_rows.rows, keep_defaults, reader_contradiction};

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

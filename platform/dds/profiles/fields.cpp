#include "platform/dds/profiles/fields.hpp"

#include <algorithm>
#include <iterator>

#include "platform/dds/interface/member_of.hpp"
#include "platform/dds/profiles/values.hpp"

namespace pexa::dds {
namespace {

template <auto Member, typename Value = ProfileValue<typename MemberOf<Member>::Type>>
constexpr FieldRow row(std::string_view policy, std::string_view element) {
    using Policy = typename MemberOf<Member>::Record;
    return {policy, element,
            [](xml::Parser& faults, const Element& value, void* to) {
                Value::read(faults, value, static_cast<Policy*>(to)->*Member);
            },
            [](void* to, const void* from) {
                return Value::copy(static_cast<Policy*>(to)->*Member,
                                   static_cast<const Policy*>(from)->*Member);
            }};
}

template <auto Member>
constexpr FieldRow limit(std::string_view policy, std::string_view element) {
    return row<Member, LimitProfileValue>(policy, element);
}

using Durability = DDS_DurabilityQosPolicy;
using Service = DDS_DurabilityServiceQosPolicy;
using Presentation = DDS_PresentationQosPolicy;
using Liveliness = DDS_LivelinessQosPolicy;
using Reliability = DDS_ReliabilityQosPolicy;
using Limits = DDS_ResourceLimitsQosPolicy;
using WriterLifecycle = DDS_WriterDataLifecycleQosPolicy;
using ReaderLifecycle = DDS_ReaderDataLifecycleQosPolicy;

// The rows of a policy stand together.
constexpr FieldRow rows[] = {
    row<&DDS_UserDataQosPolicy::value>("user_data", "value"),
    row<&DDS_TopicDataQosPolicy::value>("topic_data", "value"),
    row<&DDS_GroupDataQosPolicy::value>("group_data", "value"),
    row<&Durability::kind>("durability", "kind"),
    row<&Service::service_cleanup_delay>("durability_service", "service_cleanup_delay"),
    row<&Service::history_kind>("durability_service", "history_kind"),
    row<&Service::history_depth>("durability_service", "history_depth"),
    limit<&Service::max_samples>("durability_service", "max_samples"),
    limit<&Service::max_instances>("durability_service", "max_instances"),
    limit<&Service::max_samples_per_instance>("durability_service", "max_samples_per_instance"),
    row<&Presentation::access_scope>("presentation", "access_scope"),
    row<&Presentation::coherent_access>("presentation", "coherent_access"),
    row<&Presentation::ordered_access>("presentation", "ordered_access"),
    row<&DDS_DeadlineQosPolicy::period>("deadline", "period"),
    row<&DDS_LatencyBudgetQosPolicy::duration>("latency_budget", "duration"),
    row<&DDS_OwnershipQosPolicy::kind>("ownership", "kind"),
    row<&DDS_OwnershipStrengthQosPolicy::value>("ownership_strength", "value"),
    row<&Liveliness::kind>("liveliness", "kind"),
    row<&Liveliness::lease_duration>("liveliness", "lease_duration"),
    row<&DDS_TimeBasedFilterQosPolicy::minimum_separation>("time_based_filter",
                                                           "minimum_separation"),
    row<&DDS_PartitionQosPolicy::name>("partition", "name"),
    row<&Reliability::kind>("reliability", "kind"),
    row<&Reliability::max_blocking_time>("reliability", "max_blocking_time"),
    row<&DDS_TransportPriorityQosPolicy::value>("transport_priority", "value"),
    row<&DDS_LifespanQosPolicy::duration>("lifespan", "duration"),
    row<&DDS_DestinationOrderQosPolicy::kind>("destination_order", "kind"),
    row<&DDS_HistoryQosPolicy::kind>("history", "kind"),
    row<&DDS_HistoryQosPolicy::depth>("history", "depth"),
    limit<&Limits::max_samples>("resource_limits", "max_samples"),
    limit<&Limits::max_instances>("resource_limits", "max_instances"),
    limit<&Limits::max_samples_per_instance>("resource_limits", "max_samples_per_instance"),
    row<&DDS_EntityFactoryQosPolicy::autoenable_created_entities>("entity_factory",
                                                                  "autoenable_created_entities"),
    row<&WriterLifecycle::autodispose_unregistered_instances>("writer_data_lifecycle",
                                                              "autodispose_unregistered_instances"),
    row<&ReaderLifecycle::autopurge_nowriter_samples_delay>("reader_data_lifecycle",
                                                            "autopurge_nowriter_samples_delay"),
    row<&ReaderLifecycle::autopurge_disposed_samples_delay>("reader_data_lifecycle",
                                                            "autopurge_disposed_samples_delay"),
    row<&DDS_BatchQosPolicy::enable>("batch", "enable"),
    row<&DDS_EntityNameQosPolicy::name>("participant_name", "name"),
    row<&DDS_PropertyQosPolicy::value>("property", "value"),
};

}  // namespace

std::span<const FieldRow> fields_of(std::string_view policy) {
    const auto is_of_policy = [&](const FieldRow& field) { return field.policy == policy; };
    const auto* first = std::find_if(std::begin(rows), std::end(rows), is_of_policy);
    const auto* last = std::find_if_not(first, std::end(rows), is_of_policy);
    return {first, last};
}

}  // namespace pexa::dds

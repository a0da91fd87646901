/// @file entities.hpp
/// @brief The tool's participant, readers and writers in a domain.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <set>

#include "tools/domain/deleter.hpp"
#include "tools/domain/typed_topic.hpp"
#include "tools/records/application.hpp"
#include "tools/records/domain_options.hpp"
#include "tools/records/endpoint.hpp"

namespace orvane::tools {

void delete_with_contents(DDS_DomainParticipant* participant);
/// Deletes the participant with all that was created in it.
using Participant = std::unique_ptr<DDS_DomainParticipant, Deleter<delete_with_contents>>;

/// Joins a domain. From the first call on, the middleware prints on the standard error.
/// @return NULL when the domain cannot be joined; the middleware has said why
Participant join_domain(const DomainOptions& domain);

/// The application of a participant, as other participants see it.
Application identity_of(DDS_DomainParticipant* participant);
Application application_of(const QEL_KX_HostAndAppId& identity);
/// The application that a sample names. Its instance id is known when the sample is its own.
Application application_of(const QEL_KX_HostAndAppId& identity, const Endpoint& writer);
QEL_KX_HostAndAppId to_identity(const Application& application);
/// Since 1970-01-01 UTC.
std::int64_t nanoseconds_of(const DDS_Time_t& time);
/// The endpoint of a handle.
Endpoint endpoint_of(const DDS_InstanceHandle_t& handle);

/// The endpoints that one is matched with.
/// @param list the operation that lists their handles
template <typename Entity>
std::set<Endpoint> matched_endpoints(Entity* endpoint,
                                     DDS_ReturnCode_t (*list)(Entity*, DDS_InstanceHandleSeq*)) {
    std::set<Endpoint> found;
    DDS_InstanceHandleSeq handles{};
    if (list(endpoint, &handles) == DDS_RETCODE_OK) {
        const DDS_Long count = DDS_InstanceHandleSeq_get_length(&handles);
        for (DDS_Long i = 0; i < count; ++i) {
            found.insert(endpoint_of(*DDS_InstanceHandleSeq_get_reference(&handles, i)));
        }
    }
    DDS_InstanceHandleSeq_finalize(&handles);
    return found;
}

struct TopicNames {
    const char* topic;
    const char* type;
};
DDS_DataReader* create_reader(DDS_DomainParticipant* participant, const TopicNames& names,
                              DDS_DurabilityQosPolicyKind durability,
                              DDS_HistoryQosPolicyKind history);

/// How a writer keeps samples until the readers have them, and sends them.
struct WriterPolicies {
    DDS_HistoryQosPolicyKind history = DDS_KEEP_ALL_HISTORY_QOS;
    /// Samples of an instance that are kept for readers that come later; nothing for none.
    std::optional<DDS_Long> kept_for_late_readers{};
    bool batches = false;
};
DDS_DataWriter* create_writer(DDS_DomainParticipant* participant, const TopicNames& names,
                              const WriterPolicies& policies);

/// A reliable reader of the type's topic. @return NULL when it could not be made
template <typename Sample>
DDS_DataReader* create_reader(DDS_DomainParticipant* participant,
                              DDS_DurabilityQosPolicyKind durability,
                              DDS_HistoryQosPolicyKind history) {
    using Topic = TypedTopic<Sample>;
    return Topic::register_type(participant, Topic::type_name) == DDS_RETCODE_OK
               ? create_reader(participant, {Topic::name, Topic::type_name}, durability, history)
               : nullptr;
}

/// A reliable writer of the type's topic that keeps everything until the readers have it, unless
/// the policies say else. @return NULL when it could not be made
template <typename Sample>
DDS_DataWriter* create_writer(DDS_DomainParticipant* participant, const WriterPolicies& policies) {
    using Topic = TypedTopic<Sample>;
    return Topic::register_type(participant, Topic::type_name) == DDS_RETCODE_OK
               ? create_writer(participant, {Topic::name, Topic::type_name}, policies)
               : nullptr;
}

}  // namespace orvane::tools

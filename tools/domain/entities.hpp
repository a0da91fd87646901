/// @file domain_entities.hpp
/// @brief The tool's place in a domain: its participant, its readers and writers, and the wait for
/// what they have to tell.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>

#include "tools/domain/typed_topic.hpp"
#include "tools/records/log_record.hpp"

namespace orvane::tools {

template <auto Release>
struct Releaser {
    template <typename Resource>
    void operator()(Resource* resource) const {
        Release(resource);
    }
};

void delete_with_contents(DDS_DomainParticipant* participant);
/// Deletes the participant with all that was created in it.
using Participant = std::unique_ptr<DDS_DomainParticipant, Releaser<delete_with_contents>>;

/// Joins a domain. From the first time on, the middleware's diagnostics go to the standard error.
/// @return NULL when the domain cannot be joined; the middleware has said why
Participant join_domain(std::int32_t domain_id);

/// The application that a participant is for the others.
Application identity_of(DDS_DomainParticipant* participant);
Application application_of(const QEL_KX_HostAndAppId& identity);
/// The application that an endpoint belongs to, from the endpoint's handle.
Application application_of(const DDS_InstanceHandle_t& endpoint);

struct TopicNames {
    const char* topic;
    const char* type;
};
DDS_DataReader* create_reader(DDS_DomainParticipant* participant, const TopicNames& names,
                              DDS_DurabilityQosPolicyKind durability,
                              DDS_HistoryQosPolicyKind history);
DDS_DataWriter* create_writer(DDS_DomainParticipant* participant, const TopicNames& names);

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

/// A reliable writer of the type's topic that keeps everything until the readers have it.
/// @return NULL when it could not be made
template <typename Sample>
DDS_DataWriter* create_writer(DDS_DomainParticipant* participant) {
    using Topic = TypedTopic<Sample>;
    return Topic::register_type(participant, Topic::type_name) == DDS_RETCODE_OK
               ? create_writer(participant, {Topic::name, Topic::type_name})
               : nullptr;
}

/// A wait for several endpoints at once, which another thread may end. The endpoints must outlive
/// it.
class Wakeup {
public:
    /// @return false without memory
    [[nodiscard]] bool open();
    /// Samples of the reader end the wait until they have been taken.
    [[nodiscard]] bool on_data(DDS_DataReader* reader);
    /// Changes of these statuses end the wait until the statuses have been read.
    [[nodiscard]] bool on_status(DDS_Entity* entity, DDS_StatusMask statuses);

    void wait(std::chrono::milliseconds longest);
    /// Ends this wait and all later ones. May be called from any thread.
    void interrupt();

private:
    bool attach(DDS_Condition* condition);

    // The wait set goes before what is attached to it.
    std::unique_ptr<DDS_GuardCondition, Releaser<DDS_GuardCondition_delete>> interrupted_;
    std::unique_ptr<DDS_WaitSet, Releaser<DDS_WaitSet_delete>> wait_set_;
};

}  // namespace orvane::tools

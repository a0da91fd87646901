/// @file participant_factory.hpp
/// @brief The participant factory.
#pragma once

#include "platform/dds/domain/participant.hpp"
#include "platform/dds/entity/children.hpp"
#include "platform/dds/profiles/profiles.hpp"

namespace pexa::dds {

/// A process has at most one factory.
class Factory {
public:
    using Handle = DDS_DomainParticipantFactory;

    /// @return the factory, made now if need be.
    static Factory* instance();
    /// Frees the factory, if it exists. @return PRECONDITION_NOT_MET while it has participants
    static Status finalize(const Operation& operation);

    Status get_qos(DDS_DomainParticipantFactoryQos& qos) const { return qos_.copy_to(qos); }
    /// @param qos NULL for the DDS standard's
    Status set_qos(const Operation& operation, const DDS_DomainParticipantFactoryQos* qos) {
        return qos_.assign_checked(operation, qos);
    }
    const DefaultQos<DDS_DomainParticipantQos>& default_participant_qos() const {
        return default_participant_qos_;
    }
    Status get_default_participant_qos(const Operation& operation,
                                       DDS_DomainParticipantQos& qos) const {
        return default_participant_qos_.copy_to(operation, nullptr, qos);
    }
    /// @param qos NULL takes an earlier setting back
    Status set_default_participant_qos(const Operation& operation,
                                       const DDS_DomainParticipantQos* qos) {
        return default_participant_qos_.assign_checked(operation, qos);
    }

    /// @return a failure after a report
    Result<Participant*> create_participant(const Operation& operation, DDS_DomainId_t domain,
                                            const DDS_DomainParticipantQos* qos,
                                            const DDS_DomainParticipantListener* listener,
                                            DDS_StatusMask mask);
    Result<Participant*> wrap_participant(const Operation& operation, engine::EntityId participant);
    Status delete_participant(const Operation& operation, Participant& participant);
    Participant* find_participant(DDS_DomainId_t domain) const;

    /// @name QoS profiles
    /// @{
    Profiles& profiles() { return profiles_; }
    Status load_profiles(const Operation& operation, const char* file_name) {
        return profiles_.load(operation, file_name);
    }
    Status reload_profiles(const Operation& operation) { return profiles_.reload(operation); }
    Status get_profiles(const Operation& operation, DDS_StringSeq& names, const char* library);
    Status get_libraries(const Operation& operation, DDS_StringSeq& names);
    /// Copies the QoS of one kind out of a profile.
    /// @param topic_name NULL matches no filter
    /// @return NO_DATA after a report when there is no such profile, ERROR when it is refused
    template <typename Record>
    Status get_profile_qos(const Operation& operation, Record& qos, const char* library,
                           const char* profile, const char* topic_name);
    /// @}

private:
    KeptQos<DDS_DomainParticipantFactoryQos> qos_;
    Profiles profiles_;
    DefaultQos<DDS_DomainParticipantQos> default_participant_qos_{profiles_};
    Children<Participant> participants_;
};

}  // namespace pexa::dds

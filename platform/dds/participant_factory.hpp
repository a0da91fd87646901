/// @file participant_factory.hpp
/// @brief The participant factory.
#pragma once

#include "dds/children.hpp"
#include "dds/participant.hpp"
#include "dds/profile_store.hpp"

namespace pexa::dds {

/// There is one in the process at most.
class Factory {
public:
    using Handle = DDS_DomainParticipantFactory;

    /// @return the factory, made now if need be.
    [[nodiscard]] static Factory* instance();
    /// Frees the factory, if there is one. @return PRECONDITION_NOT_MET while it has participants
    [[nodiscard]] static DDS_ReturnCode_t finalize(const Operation& operation);

    [[nodiscard]] DDS_ReturnCode_t get_qos(DDS_DomainParticipantFactoryQos& qos) const {
        return qos_.copy_to(qos);
    }
    /// @param qos NULL for the DDS standard's
    [[nodiscard]] DDS_ReturnCode_t set_qos(const Operation& operation,
                                           const DDS_DomainParticipantFactoryQos* qos) {
        return qos_.assign_checked(operation, qos);
    }
    [[nodiscard]] const KeptQos<DDS_DomainParticipantQos>& default_participant_qos() const {
        return default_participant_qos_;
    }
    [[nodiscard]] DDS_ReturnCode_t get_default_participant_qos(
        DDS_DomainParticipantQos& qos) const {
        return default_participant_qos_.copy_to(qos);
    }
    [[nodiscard]] DDS_ReturnCode_t set_default_participant_qos(
        const Operation& operation, const DDS_DomainParticipantQos* qos) {
        return default_participant_qos_.assign_checked(operation, qos);
    }

    /// @return NULL after a report
    [[nodiscard]] Participant* create_participant(const Operation& operation, DDS_DomainId_t domain,
                                                  const DDS_DomainParticipantQos* qos,
                                                  const DDS_DomainParticipantListener* listener,
                                                  DDS_StatusMask mask);
    [[nodiscard]] Participant* wrap_participant(const Operation& operation,
                                                engine::EntityId participant);
    [[nodiscard]] DDS_ReturnCode_t delete_participant(const Operation& operation,
                                                      Participant& participant);
    [[nodiscard]] Participant* find_participant(DDS_DomainId_t domain) const;

    /// @name QoS profiles
    /// @{
    [[nodiscard]] DDS_ReturnCode_t get_profiles(DDS_StringSeq& names, const char* library) const;
    [[nodiscard]] DDS_ReturnCode_t get_libraries(DDS_StringSeq& names) const;
    /// Copies the QoS of one kind out of a profile.
    /// @return NO_DATA after a report when there is no such profile
    template <typename Record>
    [[nodiscard]] DDS_ReturnCode_t get_profile_qos(const Operation& operation, Record& qos,
                                                   const char* library, const char* profile) const;
    /// The profiles themselves, to be loaded before other threads look for them.
    [[nodiscard]] ProfileStore& profiles() { return profiles_; }
    /// @}

private:
    KeptQos<DDS_DomainParticipantFactoryQos> qos_;
    KeptQos<DDS_DomainParticipantQos> default_participant_qos_;
    ProfileStore profiles_;
    Children<Participant> participants_;
};

}  // namespace pexa::dds

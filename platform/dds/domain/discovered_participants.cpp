#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/dds/domain/participant.hpp"
#include "platform/dds/interface/value_conversion.hpp"

namespace pexa::dds {

namespace {

void swap_policies(DDS_ParticipantBuiltinTopicData& data, DDS_DomainParticipantQos& qos) {
    std::swap(data.user_data, qos.user_data);
    std::swap(data.participant_name, qos.participant_name);
    std::swap(data.property, qos.property);
}

Status find_others(engine::EntityId self, std::vector<engine::ParticipantData>& others) {
    return self == engine::no_entity ? Status::not_enabled
                                     : engine::get_discovered_participants(self, others);
}

Status store(const engine::ParticipantData& participant, DDS_ParticipantBuiltinTopicData& data) {
    OwnedQos<DDS_DomainParticipantQos> announced;
    const Status status = from_engine(participant.qos, announced.get());
    if (status == Status::ok) {
        static_assert(sizeof data.key.value == sizeof participant.guid);
        std::memcpy(data.key.value, participant.guid.data(), participant.guid.size());
        swap_policies(data, announced.get());
    }
    return status;
}

}  // namespace

Status Participant::get_discovered_participants(DDS_InstanceHandleSeq& handles) const {
    std::vector<engine::ParticipantData> others;
    const Status status = find_others(engine_id(), others);
    return status == Status::ok
               ? store_handles(
                     others,
                     [](const engine::ParticipantData& other) { return to_handle(other.guid); },
                     handles)
               : status;
}

Status Participant::get_discovered_participant_data(const Operation& operation,
                                                    DDS_ParticipantBuiltinTopicData& data,
                                                    const DDS_InstanceHandle_t& handle) const {
    std::vector<engine::ParticipantData> others;
    const Status status = find_others(engine_id(), others);
    if (status != Status::ok) {
        return status;
    }
    const std::optional<engine::Guid> guid = to_key_hash(handle);
    const auto found =
        std::find_if(others.begin(), others.end(),
                     [&](const engine::ParticipantData& other) { return other.guid == guid; });
    return found != others.end() ? store(*found, data) : operation.bad_parameter("handle");
}

}  // namespace pexa::dds

namespace dds = pexa::dds;

DDS_ReturnCode_t DDS_ParticipantBuiltinTopicData_initialize(DDS_ParticipantBuiltinTopicData* self) {
    if (self == nullptr) {
        return dds::exported(dds::Operation(__func__).bad_parameter("self"));
    }
    *self = {};
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t DDS_ParticipantBuiltinTopicData_finalize(DDS_ParticipantBuiltinTopicData* self) {
    if (self == nullptr) {
        return dds::exported(dds::Operation(__func__).bad_parameter("self"));
    }
    dds::OwnedQos<DDS_DomainParticipantQos> freed;
    dds::swap_policies(*self, freed.get());
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t DDS_DomainParticipant_get_discovered_participants(DDS_DomainParticipant* self,
                                                                   DDS_InstanceHandleSeq* handles) {
    return dds::call(__func__, self, &dds::Participant::get_discovered_participants,
                     dds::required("handles", handles));
}

DDS_ReturnCode_t DDS_DomainParticipant_get_discovered_participant_data(
    DDS_DomainParticipant* self, DDS_ParticipantBuiltinTopicData* data,
    const DDS_InstanceHandle_t* handle) {
    return dds::call(__func__, self, &dds::Participant::get_discovered_participant_data,
                     dds::required("data", data), dds::required("handle", handle));
}

#include "tools/domain/participant_census.hpp"

namespace orvane::tools {

bool is_secured(const Endpoint& participant) {
    constexpr std::uint32_t first_bit = 0x8000'0000;
    return (participant.guid[0] & first_bit) != 0;
}

ParticipantCensus count_participants(DDS_DomainParticipant* participant) {
    ParticipantCensus census;
    for (const Endpoint& each :
         matched_endpoints(participant, DDS_DomainParticipant_get_discovered_participants)) {
        ++(is_secured(each) ? census.secured : census.unsecured);
    }
    return census;
}

}  // namespace orvane::tools

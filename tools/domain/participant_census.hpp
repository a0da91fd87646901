/// @file participant_census.hpp
/// @brief Who else is in a domain, with and without DDS Security.
#pragma once

#include <cstddef>

#include "tools/domain/entities.hpp"

namespace orvane::tools {

/// The other participants of a domain. A participant announces itself to all, also to those that it
/// then does not talk to.
struct ParticipantCensus {
    std::size_t secured = 0;
    std::size_t unsecured = 0;
};

/// Whether a participant uses DDS Security, by its GUID (DDS Security 1.1, 9.3.3).
bool is_secured(const Endpoint& participant);

ParticipantCensus count_participants(DDS_DomainParticipant* participant);

}  // namespace orvane::tools

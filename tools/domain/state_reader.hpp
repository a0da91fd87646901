/// @file state_reader.hpp
/// @brief A reader of the States of a domain's loggers.
#pragma once

#include <vector>

#include "tools/domain/entities.hpp"
#include "tools/records/result.hpp"
#include "tools/records/state_update.hpp"

namespace orvane::tools {

/// A reader that gets the last State of every logger and each one from then on.
/// @return NULL when it could not be made
DDS_DataReader* create_state_reader(DDS_DomainParticipant* participant);

/// Appends all that has arrived to @p updates. @return failed when the reader failed
Status take_states(DDS_DataReader* reader, std::vector<StateUpdate>& updates);

}  // namespace orvane::tools

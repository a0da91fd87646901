/// @file statistics_reader.hpp
/// @brief A reader of the statistics of a domain's loggers.
#pragma once

#include <vector>

#include "tools/domain/entities.hpp"
#include "tools/records/logger_statistics.hpp"
#include "tools/records/result.hpp"

namespace orvane::tools {

/// A reader that gets the last statistics of every logger and all from then on.
/// @return NULL when it could not be made
DDS_DataReader* create_statistics_reader(DDS_DomainParticipant* participant);

/// Appends all that have arrived to @p statistics.
/// @param reader NULL has none
/// @param viewer the reader of messages that the loggers may know
/// @return failed when the reader failed
Status take_statistics(DDS_DataReader* reader, const Endpoint& viewer,
                       std::vector<LoggerStatistics>& statistics);

}  // namespace orvane::tools

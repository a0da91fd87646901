/// @file process_discovery.hpp
/// @brief The processes behind the applications of a domain.
#pragma once

#include <set>
#include <utility>
#include <vector>

#include "tools/domain/entities.hpp"
#include "tools/records/process.hpp"

namespace orvane::tools {

/// Finds out once for each application what its participant announces of its process.
class ProcessDiscovery {
public:
    using Processes = std::vector<std::pair<Application, Process>>;

    /// Looks up the applications that it has not been asked for before; with one that is found, it
    /// takes some milliseconds.
    /// @return those that announce something
    Processes look_up(DDS_DomainParticipant* participant,
                      const std::set<Application>& applications);

private:
    std::set<Application> known_;  ///< have been asked for, but for many that have gone
};

}  // namespace orvane::tools

/// @file state_reader.hpp
/// @brief A reader of the States of a domain's loggers.
#pragma once

#include <set>
#include <vector>

#include "tools/domain/entities.hpp"
#include "tools/domain/state_writers.hpp"
#include "tools/records/result.hpp"
#include "tools/records/state_update.hpp"

namespace orvane::tools {

/// A reader that gets the last State of every logger and each one from then on, also of loggers
/// that share HOST:APP.
class StateReader {
public:
    /// To be called first. @return failed when it could not be made
    Status open(DDS_DomainParticipant* participant);

    /// NULL when it could not be made.
    DDS_DataReader* reader() const { return reader_; }

    /// Appends news of all that has arrived to @p updates. Changes of the matched writers are news,
    /// too. @return failed when the reader failed
    Status take(std::vector<StateUpdate>& updates);

private:
    std::set<Endpoint> matched() const;

    DDS_DataReader* reader_ = nullptr;
    std::set<Endpoint> matched_;  ///< at the last change
    StateWriters writers_;
};

}  // namespace orvane::tools

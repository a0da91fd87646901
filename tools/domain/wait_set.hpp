/// @file wait_set.hpp
/// @brief The wait for the tool's readers and writers.
#pragma once

#include <chrono>
#include <memory>

#include "pexa/pexa.h"
#include "tools/domain/deleter.hpp"
#include "tools/records/result.hpp"

namespace orvane::tools {

/// A wait for several endpoints at once, which another thread may end. The endpoints must outlive
/// it.
class WaitSet {
public:
    /// To be called first. @return failed without memory
    Status open();
    /// Samples of the reader end the wait until they have been taken.
    Status attach_data_of(DDS_DataReader* reader);
    /// Changes of these statuses end the wait until the statuses have been read.
    Status attach_statuses_of(DDS_Entity* entity, DDS_StatusMask statuses);

    void wait(std::chrono::milliseconds longest);
    /// Ends this wait and all later ones. May be called from any thread.
    void interrupt();

private:
    Status attach(DDS_Condition* condition);

    // The wait set is deleted before its conditions.
    std::unique_ptr<DDS_GuardCondition, Deleter<DDS_GuardCondition_delete>> interrupted_;
    std::unique_ptr<DDS_WaitSet, Deleter<DDS_WaitSet_delete>> wait_set_;
};

}  // namespace orvane::tools

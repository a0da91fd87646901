/// @file loan.hpp
/// @brief Samples that a reader has lent to the application.
#pragma once

#include <list>
#include <mutex>
#include <vector>

#include "pexa/subscription.h"
#include "platform/dds/payload/codec.hpp"
#include "platform/engine/type.hpp"

namespace pexa::dds {

/// The two arrays behind a pair of lent sequences, the same number of elements in each.
struct Loan {
    std::vector<void*> samples;
    std::vector<DDS_SampleInfo> infos;
    /// The engine's samples, until they are decoded.
    std::vector<engine::Sample> received;
};

/// The loans of one reader. An ended loan's memory serves the next one.
class LoanBook {
public:
    /// A loan on its own in a list, so that entering it into the book cannot fail.
    using Entry = std::list<Loan>;

    /// @return an empty loan that is not in the book yet.
    Entry take_blank();
    /// Keeps the memory of a loan without samples.
    void put_back(Entry& entry);
    /// Enters a loan that is handed out.
    void enter(Entry& entry);

    /// Ends a loan.
    /// @param samples, count, infos as they were handed out
    /// @return an empty list when there is no such loan
    Entry end(void* const* samples, DDS_Long count, const DDS_SampleInfo* infos);
    bool empty() const;

private:
    mutable std::mutex mutex_;
    Entry outstanding_;
    Entry blank_;
};

}  // namespace pexa::dds

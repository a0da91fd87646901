/// @file batch.hpp
/// @brief The samples that a batching writer has written and Cyclone has not sent yet.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/engine/qos.hpp"

namespace pexa::engine::cyclone {

/// Counts the samples of a batch. The bounds are exact as long as one thread writes at a time.
class Batch {
public:
    /// @param qos of the writer; without `batching` a batch is never to be sent
    explicit Batch(const Qos& qos);

    /// @return whether to send the batch before the next write, which may take long
    bool is_old() const;
    /// Counts a sample that was written. @return whether to send the batch
    bool add();
    void clear() { samples_.store(0, std::memory_order_relaxed); }

private:
    std::int64_t limit_;
    std::atomic<std::int64_t> samples_{0};
    std::atomic<std::int64_t> first_at_{0};
};

}  // namespace pexa::engine::cyclone

/// @file backlog.hpp
/// @brief Messages that wait in the queue although their units have been taken.
#pragma once

#include <algorithm>

#include "pexa/base.h"

namespace orvane::core {

/// Each write that times out has taken a unit of the queue and leaves its message at the head. The
/// next message that is logged brings a unit, and with it the head is tried again. When that
/// succeeds the thread publishes as many messages without units as time-outs have taken. Otherwise
/// that many messages would stay behind for good.
class Backlog {
public:
    /// @param most messages that the queue can hold. A message that finds no room brings a unit for
    /// another one.
    explicit Backlog(DDS_Long most) noexcept : most_(most) {}

    /// @return whether the next message is to be published without a unit.
    bool is_due() const noexcept { return messages_ > 0 && !is_stalled_; }

    /// Notes the end of a write.
    /// @param was_due what is_due() returned before
    /// @param timed_out whether the message is still in the queue
    void note(bool was_due, bool timed_out) noexcept {
        if (was_due != timed_out) {
            messages_ = was_due ? messages_ - 1 : std::min(messages_ + 1, most_);
        }
        is_stalled_ = timed_out;
    }

    /// Notes that the queue is empty: a message that found no room has brought a unit for another.
    void end() noexcept { messages_ = 0; }

private:
    const DDS_Long most_;
    DDS_Long messages_ = 0;
    bool is_stalled_ = false;
};

}  // namespace orvane::core

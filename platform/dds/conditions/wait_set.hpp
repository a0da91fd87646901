/// @file wait_set.hpp
/// @brief Waiting for conditions.
#pragma once

#include <atomic>
#include <list>
#include <vector>

#include "platform/dds/conditions/condition.hpp"
#include "platform/internal/success.hpp"

namespace pexa::dds {

/// A set of conditions that one thread at a time can wait for.
class WaitSet {
public:
    using Handle = DDS_WaitSet;

    /// @return a failure after a report
    static Result<WaitSet*> create(const Operation& operation);
    WaitSet(const WaitSet&) = delete;
    WaitSet& operator=(const WaitSet&) = delete;

    /// Deletes itself. @return PRECONDITION_NOT_MET while a thread waits
    Status destroy(const Operation& operation);

    /// Attaching a condition again changes nothing.
    Status attach(const Operation& operation, Condition& condition);
    Status detach(const Operation& operation, Condition& condition);

    /// The right to wait. It lasts from the first step of a wait to the end of the object, also
    /// when that comes by a cancellation of the thread.
    class Turn {
    public:
        Turn() = default;
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;
        ~Turn();
        /// @return false while another thread waits
        Success take(WaitSet& set);

    private:
        WaitSet* set_ = nullptr;
    };
    /// A step of a wait.
    Status wait(const Operation& operation, DDS_ConditionSeq& active, const DDS_Duration_t& timeout,
                Turn* turn);

    /// Takes a condition that ends out of all wait sets.
    static void forget(const Condition& condition);
    static bool is_attached(const Condition& condition);

private:
    /// The engine's id is kept: the condition may have gone when the engine names it.
    struct Attachment {
        Condition* condition;
        engine::EntityId id;
    };

    explicit WaitSet(engine::EntityId id);
    ~WaitSet();

    bool contains(const Condition& condition) const;
    Status store(const std::vector<engine::EntityId>& triggered, DDS_ConditionSeq& active) const;

    engine::EntityId id_;
    std::list<Attachment> attachments_;
    std::atomic<bool> waiting_ = false;
    /// All wait sets of the process are linked, so that a condition can leave those it is in.
    WaitSet* next_ = nullptr;
};

}  // namespace pexa::dds

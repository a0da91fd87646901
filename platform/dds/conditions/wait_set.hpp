/// @file wait_set.hpp
/// @brief Waiting for conditions.
#pragma once

#include <atomic>
#include <list>
#include <vector>

#include "platform/dds/conditions/condition.hpp"

namespace pexa::dds {

/// A set of conditions that one thread at a time can wait for.
class WaitSet {
public:
    using Handle = DDS_WaitSet;

    /// @return NULL after a report
    [[nodiscard]] static WaitSet* create(const Operation& operation);
    WaitSet(const WaitSet&) = delete;
    WaitSet& operator=(const WaitSet&) = delete;

    /// Deletes itself. @return PRECONDITION_NOT_MET while a thread waits
    [[nodiscard]] DDS_ReturnCode_t destroy(const Operation& operation);

    /// Attaching a condition again changes nothing.
    [[nodiscard]] DDS_ReturnCode_t attach(const Operation& operation, Condition& condition);
    [[nodiscard]] DDS_ReturnCode_t detach(const Operation& operation, Condition& condition);
    [[nodiscard]] DDS_ReturnCode_t wait(const Operation& operation, DDS_ConditionSeq& active,
                                        const DDS_Duration_t& timeout);

    /// Takes a condition that ends out of all wait sets.
    static void forget(const Condition& condition);
    [[nodiscard]] static bool is_attached(const Condition& condition);

private:
    /// The engine's id is kept: the condition may have gone when the engine names it.
    struct Attachment {
        Condition* condition;
        engine::EntityId id;
    };

    explicit WaitSet(engine::EntityId id);
    ~WaitSet();

    [[nodiscard]] bool contains(const Condition& condition) const;
    [[nodiscard]] DDS_ReturnCode_t store(const std::vector<engine::EntityId>& triggered,
                                         DDS_ConditionSeq& active) const;

    engine::EntityId id_;
    std::list<Attachment> attachments_;
    std::atomic<bool> waiting_ = false;
    /// All wait sets of the process are linked, so that a condition can leave those it is in.
    WaitSet* next_ = nullptr;
};

}  // namespace pexa::dds

/// @file entity.hpp
/// @brief What all entities share: enabling, deletion, listeners, the status condition.
#pragma once

#include <atomic>
#include <mutex>

#include "platform/dds/conditions/condition.hpp"
#include "platform/dds/interface/operation.hpp"
#include "platform/dds/listeners/listener_slot.hpp"
#include "platform/engine/engine.hpp"

namespace pexa::dds {

/// An entity exists on this side from its creation and in the engine from its enabling on.
class Entity {
public:
    using Handle = DDS_Entity;

    Entity(const Entity&) = delete;
    Entity& operator=(const Entity&) = delete;
    virtual ~Entity() = default;

    /// @return the engine's entity, no_entity while this one is disabled.
    [[nodiscard]] engine::EntityId engine_id() const { return engine_id_.load(); }
    [[nodiscard]] DDS_Boolean enabled() const { return engine_id() != engine::no_entity ? 1 : 0; }
    /// Brings it, and what it contains if its QoS says so, into operation.
    [[nodiscard]] DDS_ReturnCode_t enable(const Operation& operation);
    /// Deletes the engine's entity, which waits for running callbacks; only destruction is left to
    /// do. On failure nothing has changed.
    [[nodiscard]] DDS_ReturnCode_t close(const Operation& operation);

    [[nodiscard]] DDS_StatusMask status_changes() const;
    [[nodiscard]] DDS_InstanceHandle_t instance_handle() const;
    [[nodiscard]] StatusCondition* status_condition() { return &status_condition_; }
    /// @return the statuses that this kind of entity has.
    [[nodiscard]] virtual engine::StatusMask statuses() const { return 0; }

    [[nodiscard]] DDS_ReturnCode_t set_listener(const Operation& operation,
                                                const ListenerSetting& setting);
    /// Tells the engine which statuses somebody takes, of this entity and those in it, and waits
    /// for running callbacks.
    [[nodiscard]] DDS_ReturnCode_t refresh_listeners();
    [[nodiscard]] const ListenerSlot& listeners() const { return listeners_; }

protected:
    /// @param parent what contains it, or NULL for a participant
    explicit Entity(const Entity* parent)
        : parent_(parent),
          listeners_(parent != nullptr ? &parent->listeners_ : nullptr),
          status_condition_(*this) {}

    /// Sets the listener of an entity that is not enabled yet.
    void set_first_listener(const ListenerSetting& setting) { listeners_.exchange(setting); }

    /// Enables the object with an entity that the engine has already.
    void adopt(engine::EntityId id) { engine_id_.store(id); }

    /// Changes the policies of the engine's entity, if there is one.
    [[nodiscard]] DDS_ReturnCode_t change_in_engine(const Operation& operation,
                                                    const engine::Qos& qos) const;

    [[nodiscard]] virtual Status delete_in_engine(engine::EntityId id);

private:
    [[nodiscard]] virtual engine::Created create_in_engine(const Operation& operation) = 0;
    /// @return what the engine calls, NULL for entities that only pass statuses on.
    [[nodiscard]] virtual engine::Listener* dispatch() { return nullptr; }
    [[nodiscard]] virtual DDS_ReturnCode_t enable_contained(const Operation&) {
        return DDS_RETCODE_OK;
    }
    virtual void refresh_contained_listeners() {}
    /// Lets go of other entities, which may be deleted before this object is destroyed.
    virtual void closed() {}

    [[nodiscard]] engine::ListenerSetting engine_listener();
    [[nodiscard]] DDS_ReturnCode_t refresh_own_listener();

    const Entity* const parent_;
    std::atomic<engine::EntityId> engine_id_ = engine::no_entity;
    std::mutex enabling_;
    ListenerSlot listeners_;
    StatusCondition status_condition_;
};

}  // namespace pexa::dds

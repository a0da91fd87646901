/// @file entity.hpp
/// @brief The operations that all entities share: enabling, deletion, listeners, the condition.
#pragma once

#include <atomic>
#include <mutex>

#include "platform/dds/entity/status_condition.hpp"
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
    engine::EntityId engine_id() const { return engine_id_.load(); }
    bool enabled() const { return engine_id() != engine::no_entity; }
    /// Brings it into operation, and the entities in it if its QoS says so.
    Status enable(const Operation& operation);
    /// Deletes the engine's entity, which waits for running callbacks; only destruction is left to
    /// do. On failure nothing has changed.
    Status close(const Operation& operation);

    DDS_StatusMask status_changes() const;
    DDS_InstanceHandle_t instance_handle() const;
    StatusCondition* status_condition() { return &status_condition_; }
    /// @return the statuses that this kind of entity has.
    virtual engine::StatusMask statuses() const { return 0; }

    Status set_listener(const Operation& operation, const ListenerSetting& setting);
    /// Tells the engine which statuses the listeners take, of this entity and of those in it. Waits
    /// for running callbacks.
    Status refresh_listeners();
    const ListenerSlot& listeners() const { return listeners_; }

protected:
    /// @param parent the entity that contains it, NULL for a participant
    explicit Entity(const Entity* parent)
        : parent_(parent),
          listeners_(parent != nullptr ? &parent->listeners_ : nullptr),
          status_condition_(*this) {}

    /// Sets the listener of an entity that is not enabled yet.
    void set_first_listener(const ListenerSetting& setting) { listeners_.exchange(setting); }

    /// @return the engine's entity of the parent.
    engine::EntityId parent_id() const { return parent_->engine_id(); }

    /// Enables the object with an entity that the engine has already.
    void adopt(engine::EntityId id) { engine_id_.store(id); }

    /// Changes the policies of the engine's entity, if it exists.
    Status change_in_engine(const Operation& operation, const engine::Qos& qos) const;

    /// Reports it if the permissions did not allow the creation. @return @p created
    static engine::Created allowed(const Operation& operation, const char* topic,
                                   const engine::Created& created);

    virtual Status delete_in_engine(engine::EntityId id);

private:
    virtual engine::Created create_in_engine(const Operation& operation) = 0;
    /// @return the engine's listener, NULL for entities that only pass statuses on.
    virtual engine::Listener* dispatch() { return nullptr; }
    virtual Status enable_contained(const Operation&) { return Status::ok; }
    virtual void refresh_contained_listeners() {}
    /// Lets go of other entities, which may be deleted before this object is destroyed.
    virtual void closed() {}

    engine::ListenerSetting engine_listener();
    Status refresh_own_listener();

    const Entity* const parent_;
    std::atomic<engine::EntityId> engine_id_ = engine::no_entity;
    std::mutex enabling_;
    ListenerSlot listeners_;
    StatusCondition status_condition_;
};

}  // namespace pexa::dds

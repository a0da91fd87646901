/// @file status_condition.hpp
/// @brief The condition that every entity has.
#pragma once

#include <atomic>

#include "platform/dds/conditions/condition.hpp"

namespace pexa::dds {

/// True while one of the enabled statuses of an entity has changed; part of the entity.
class StatusCondition final : public Condition {
public:
    using Handle = DDS_StatusCondition;

    explicit StatusCondition(Entity& entity) : entity_(entity) {}

    engine::EntityId engine_id() const override;
    Status set_enabled_statuses(DDS_StatusMask mask);
    DDS_StatusMask enabled_statuses() const { return statuses_.load(); }
    /// Tells the engine which statuses were enabled while the entity was disabled.
    Status entity_enabled() const;
    Entity* entity() const { return &entity_; }
    Condition* as_condition() { return this; }

private:
    Entity& entity_;
    std::atomic<DDS_StatusMask> statuses_ = DDS_STATUS_MASK_ALL;
};

}  // namespace pexa::dds

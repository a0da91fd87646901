/// @file condition.hpp
/// @brief Conditions that a thread can wait for.
#pragma once

#include <atomic>

#include "platform/dds/interface/operation.hpp"
#include "platform/engine/engine.hpp"

namespace pexa::dds {

/// Something that is true or not, now and then.
class Condition {
public:
    using Handle = DDS_Condition;

    Condition() = default;
    Condition(const Condition&) = delete;
    Condition& operator=(const Condition&) = delete;
    /// Leaves every wait set.
    virtual ~Condition();

    /// @return what the engine waits for, no_entity while there is no such thing.
    [[nodiscard]] virtual engine::EntityId engine_id() const = 0;
    [[nodiscard]] DDS_Boolean triggered() const;
};

/// True while the application says so.
class GuardCondition final : public Condition {
public:
    using Handle = DDS_GuardCondition;

    /// @return NULL after a report
    [[nodiscard]] static GuardCondition* create(const Operation& operation);
    ~GuardCondition() override;

    [[nodiscard]] engine::EntityId engine_id() const override { return id_; }
    [[nodiscard]] DDS_ReturnCode_t set_trigger_value(DDS_Boolean value);
    /// Deletes itself. @return PRECONDITION_NOT_MET while it is attached to a wait set
    [[nodiscard]] DDS_ReturnCode_t destroy(const Operation& operation);
    [[nodiscard]] Condition* as_condition() { return this; }

private:
    explicit GuardCondition(engine::EntityId id) : id_(id) {}

    engine::EntityId id_;
};

/// True while a reader has samples in certain states.
class ReadCondition final : public Condition {
public:
    using Handle = DDS_ReadCondition;

    ReadCondition(DataReader& reader, const engine::StateMask& states)
        : reader_(reader), states_(states) {}
    ~ReadCondition() override;

    /// Makes the engine's condition, of an enabled reader.
    [[nodiscard]] DDS_ReturnCode_t open(engine::EntityId reader);
    [[nodiscard]] DDS_ReturnCode_t close(const Operation& operation);
    /// The engine has deleted its condition together with the reader.
    void reader_closed() { id_ = engine::no_entity; }
    [[nodiscard]] engine::EntityId engine_id() const override { return id_; }
    [[nodiscard]] const engine::StateMask& states() const { return states_; }
    [[nodiscard]] DataReader* reader() const { return &reader_; }
    [[nodiscard]] Condition* as_condition() { return this; }

private:
    DataReader& reader_;
    engine::StateMask states_;
    engine::EntityId id_ = engine::no_entity;
};

/// True while one of the enabled statuses of an entity has changed; part of the entity.
class StatusCondition final : public Condition {
public:
    using Handle = DDS_StatusCondition;

    explicit StatusCondition(Entity& entity) : entity_(entity) {}

    [[nodiscard]] engine::EntityId engine_id() const override;
    [[nodiscard]] DDS_ReturnCode_t set_enabled_statuses(DDS_StatusMask mask);
    [[nodiscard]] DDS_StatusMask enabled_statuses() const { return statuses_.load(); }
    /// Tells the engine what was chosen while the entity was disabled.
    [[nodiscard]] DDS_ReturnCode_t entity_enabled() const;
    [[nodiscard]] Entity* entity() const { return &entity_; }
    [[nodiscard]] Condition* as_condition() { return this; }

private:
    Entity& entity_;
    std::atomic<DDS_StatusMask> statuses_ = DDS_STATUS_MASK_ALL;
};

}  // namespace pexa::dds

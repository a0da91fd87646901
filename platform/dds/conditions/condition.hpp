/// @file condition.hpp
/// @brief Conditions that a thread can wait for.
#pragma once

#include "platform/dds/interface/operation.hpp"
#include "platform/engine/engine.hpp"

namespace pexa::dds {

/// Something that is true at times.
class Condition {
public:
    using Handle = DDS_Condition;

    Condition() = default;
    Condition(const Condition&) = delete;
    Condition& operator=(const Condition&) = delete;
    /// Leaves every wait set.
    virtual ~Condition();

    /// @return the entity that the engine waits for, no_entity while there is none.
    virtual engine::EntityId engine_id() const = 0;
    bool triggered() const;
};

/// True while the application says so.
class GuardCondition final : public Condition {
public:
    using Handle = DDS_GuardCondition;

    /// @return a failure after a report
    static Result<GuardCondition*> create(const Operation& operation);
    ~GuardCondition() override;

    engine::EntityId engine_id() const override { return id_; }
    Status set_trigger_value(DDS_Boolean value);
    /// Deletes itself. @return PRECONDITION_NOT_MET while it is attached to a wait set
    Status destroy(const Operation& operation);
    Condition* as_condition() { return this; }

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
    Status open(engine::EntityId reader);
    Status close(const Operation& operation);
    /// The engine has deleted its condition together with the reader.
    void reader_closed() { id_ = engine::no_entity; }
    engine::EntityId engine_id() const override { return id_; }
    const engine::StateMask& states() const { return states_; }
    DataReader* reader() const { return &reader_; }
    Condition* as_condition() { return this; }

private:
    DataReader& reader_;
    engine::StateMask states_;
    engine::EntityId id_ = engine::no_entity;
};

}  // namespace pexa::dds

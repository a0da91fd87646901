#include "platform/dds/conditions/condition.hpp"

#include <new>

#include "platform/dds/conditions/wait_set.hpp"

namespace pexa::dds {

Condition::~Condition() {
    WaitSet::forget(*this);
}

bool Condition::triggered() const {
    const engine::EntityId id = engine_id();
    return id != engine::no_entity && engine::is_triggered(id);
}

Result<GuardCondition*> GuardCondition::create(const Operation& operation) {
    const engine::Created created = engine::create_guard_condition();
    if (!created) {
        return operation.not_created("guard condition", created.status);
    }
    auto* condition = new (std::nothrow) GuardCondition(created.entity);
    if (condition == nullptr) {
        // The caller hears of the missing memory; nothing uses the engine's entity.
        static_cast<void>(engine::delete_entity(created.entity));
        return operation.out_of_memory();
    }
    return condition;
}

GuardCondition::~GuardCondition() {
    // Nothing can be done here about an entity that stays.
    static_cast<void>(engine::delete_entity(id_));
}

Status GuardCondition::set_trigger_value(DDS_Boolean value) {
    return engine::set_guard_condition(id_, value != DDS_BOOLEAN_FALSE);
}

Status GuardCondition::destroy(const Operation& operation) {
    if (WaitSet::is_attached(*this)) {
        return operation.precondition_not_met("the condition is attached to no wait set");
    }
    delete this;
    return Status::ok;
}

ReadCondition::~ReadCondition() {
    if (id_ != engine::no_entity) {
        // Nothing can be done here about an entity that stays.
        static_cast<void>(engine::delete_entity(id_));
    }
}

Status ReadCondition::open(engine::EntityId reader) {
    const engine::Created created = engine::create_read_condition(reader, states_);
    id_ = created.entity;
    return created.status;
}

Status ReadCondition::close(const Operation& operation) {
    const Status status = engine::delete_entity(id_);
    if (status != Status::ok) {
        return operation.failed("deletion", status);
    }
    id_ = engine::no_entity;
    return Status::ok;
}

}  // namespace pexa::dds

namespace dds = pexa::dds;

DDS_Condition* DDS_ReadCondition_as_condition(DDS_ReadCondition* self) {
    return dds::call(__func__, self, &dds::ReadCondition::as_condition);
}

DDS_GuardCondition* DDS_GuardCondition_new() {
    const dds::Operation operation(__func__);
    return dds::guarded(operation, [&] { return dds::GuardCondition::create(operation); });
}

DDS_ReturnCode_t DDS_GuardCondition_delete(DDS_GuardCondition* self) {
    return dds::call(__func__, self, &dds::GuardCondition::destroy);
}

DDS_ReturnCode_t DDS_GuardCondition_set_trigger_value(DDS_GuardCondition* self, DDS_Boolean value) {
    return dds::call(__func__, self, &dds::GuardCondition::set_trigger_value, value);
}

DDS_Condition* DDS_GuardCondition_as_condition(DDS_GuardCondition* self) {
    return dds::call(__func__, self, &dds::GuardCondition::as_condition);
}

DDS_Boolean DDS_Condition_get_trigger_value(DDS_Condition* self) {
    return dds::call(__func__, self, &dds::Condition::triggered);
}

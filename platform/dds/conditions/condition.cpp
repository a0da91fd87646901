#include "platform/dds/conditions/condition.hpp"

#include <memory>

#include "platform/dds/conditions/wait_set.hpp"
#include "platform/dds/entity/entity.hpp"

namespace pexa::dds {

Condition::~Condition() {
    WaitSet::forget(*this);
}

DDS_Boolean Condition::triggered() const {
    const engine::EntityId id = engine_id();
    return id != engine::no_entity && engine::is_triggered(id) ? DDS_BOOLEAN_TRUE
                                                               : DDS_BOOLEAN_FALSE;
}

GuardCondition* GuardCondition::create(const Operation& operation) {
    const engine::Created created = engine::create_guard_condition();
    if (!created) {
        static_cast<void>(operation.not_created("guard condition", to_return_code(created.status)));
        return nullptr;
    }
    auto* condition = new (std::nothrow) GuardCondition(created.entity);
    if (condition == nullptr) {
        static_cast<void>(engine::delete_entity(created.entity));
        static_cast<void>(operation.out_of_memory());
    }
    return condition;
}

GuardCondition::~GuardCondition() {
    static_cast<void>(engine::delete_entity(id_));
}

DDS_ReturnCode_t GuardCondition::set_trigger_value(DDS_Boolean value) {
    return to_return_code(engine::set_guard_condition(id_, value != DDS_BOOLEAN_FALSE));
}

DDS_ReturnCode_t GuardCondition::destroy(const Operation& operation) {
    if (WaitSet::is_attached(*this)) {
        return operation.precondition_not_met("the condition is attached to no wait set");
    }
    delete this;
    return DDS_RETCODE_OK;
}

ReadCondition::~ReadCondition() {
    if (id_ != engine::no_entity) {
        static_cast<void>(engine::delete_entity(id_));
    }
}

DDS_ReturnCode_t ReadCondition::open(engine::EntityId reader) {
    const engine::Created created = engine::create_read_condition(reader, states_);
    id_ = created.entity;
    return to_return_code(created.status);
}

DDS_ReturnCode_t ReadCondition::close(const Operation& operation) {
    const Status status = engine::delete_entity(id_);
    if (status != Status::ok) {
        return operation.failed("deletion", to_return_code(status));
    }
    id_ = engine::no_entity;
    return DDS_RETCODE_OK;
}

engine::EntityId StatusCondition::engine_id() const {
    return entity_.engine_id();
}

DDS_ReturnCode_t StatusCondition::set_enabled_statuses(DDS_StatusMask mask) {
    statuses_.store(mask);
    return entity_enabled();
}

DDS_ReturnCode_t StatusCondition::entity_enabled() const {
    const engine::EntityId id = engine_id();
    // The engine starts with all of them.
    if (id == engine::no_entity) {
        return DDS_RETCODE_OK;
    }
    return to_return_code(engine::set_status_condition(id, statuses_.load() & entity_.statuses()));
}

}  // namespace pexa::dds

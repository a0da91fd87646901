#include "platform/dds/entity/entity.hpp"

#include <cstring>

#include "platform/dds/interface/value_conversion.hpp"

namespace pexa::dds {

DDS_ReturnCode_t Entity::enable(const Operation& operation) {
    if (enabled() != 0) {
        return DDS_RETCODE_OK;
    }
    if (parent_ != nullptr && parent_->enabled() == 0) {
        return operation.precondition_not_met("the entity that contains it is enabled");
    }
    {
        const std::lock_guard guard(enabling_);
        if (enabled() != 0) {
            return DDS_RETCODE_OK;
        }
        const engine::Created created = create_in_engine(operation);
        if (!created) {
            return operation.failed("enabling", to_return_code(created.status));
        }
        engine_id_.store(created.entity);
    }
    // The listener comes last, so that a callback meets an entity in full operation. What happened
    // before is announced now.
    const DDS_ReturnCode_t listening = refresh_own_listener();
    if (listening != DDS_RETCODE_OK) {
        return operation.failed("enabling the listener", listening);
    }
    const DDS_ReturnCode_t result = status_condition_.entity_enabled();
    return result == DDS_RETCODE_OK ? enable_contained(operation) : result;
}

DDS_ReturnCode_t Entity::close(const Operation& operation) {
    const engine::EntityId id = engine_id();
    if (id != engine::no_entity) {
        const Status status = delete_in_engine(id);
        if (status != Status::ok) {
            return operation.failed("deletion", to_return_code(status));
        }
        engine_id_.store(engine::no_entity);
    }
    closed();
    return DDS_RETCODE_OK;
}

Status Entity::delete_in_engine(engine::EntityId id) {
    return engine::delete_entity(id);
}

DDS_StatusMask Entity::status_changes() const {
    const engine::EntityId id = engine_id();
    return id != engine::no_entity ? engine::status_changes(id) : DDS_STATUS_MASK_NONE;
}

DDS_InstanceHandle_t Entity::instance_handle() const {
    const engine::EntityId id = engine_id();
    engine::Guid guid{};
    if (id == engine::no_entity) {
        return DDS_HANDLE_NIL;
    }
    if (engine::get_guid(id, guid) == Status::ok) {
        return to_handle(guid);
    }
    // Topics, publishers and subscribers have no GUID on the wire; theirs is made up, without a
    // prefix, so that it is like no other entity's.
    engine::LocalHandle local = 0;
    if (engine::get_local_handle(id, local) != Status::ok) {
        return DDS_HANDLE_NIL;
    }
    std::memcpy(guid.data() + guid.size() - sizeof local, &local, sizeof local);
    return to_handle(guid);
}

DDS_ReturnCode_t Entity::set_listener(const Operation& operation, const ListenerSetting& setting) {
    const ListenerSetting old = listeners_.exchange(setting);
    const DDS_ReturnCode_t result = refresh_listeners();
    if (result != DDS_RETCODE_OK) {
        listeners_.exchange(old);
        return operation.failed("setting the listener", result);
    }
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t Entity::refresh_listeners() {
    const DDS_ReturnCode_t result = refresh_own_listener();
    if (result == DDS_RETCODE_OK) {
        refresh_contained_listeners();
    }
    return result;
}

engine::ListenerSetting Entity::engine_listener() {
    engine::Listener* listener = dispatch();
    const engine::StatusMask mask = listeners_.taken() & statuses();
    return {mask != 0 ? listener : nullptr, listener != nullptr ? mask : 0};
}

DDS_ReturnCode_t Entity::refresh_own_listener() {
    const engine::EntityId id = engine_id();
    if (id == engine::no_entity || dispatch() == nullptr) {
        return DDS_RETCODE_OK;
    }
    // Whoever changes a listener of the chain meanwhile computes a newer mask, and the call with
    // the older one may come last: then it is made again.
    engine::ListenerSetting setting;
    Status status = Status::ok;
    do {
        setting = engine_listener();
        status = engine::set_listener(id, setting.listener, setting.mask);
    } while (status == Status::ok && setting.mask != engine_listener().mask);
    return to_return_code(status);
}

DDS_ReturnCode_t Entity::change_in_engine(const Operation& operation,
                                          const engine::Qos& qos) const {
    const engine::EntityId id = engine_id();
    if (id == engine::no_entity) {
        return DDS_RETCODE_OK;
    }
    const Status status = engine::set_qos(id, qos);
    return status == Status::ok ? DDS_RETCODE_OK
                                : operation.failed("changing the QoS", to_return_code(status));
}

}  // namespace pexa::dds

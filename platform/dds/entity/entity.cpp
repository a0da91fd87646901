#include "platform/dds/entity/entity.hpp"

#include <cstring>

#include "platform/dds/interface/value_conversion.hpp"

namespace pexa::dds {

Status Entity::enable(const Operation& operation) {
    if (enabled()) {
        return Status::ok;
    }
    if (parent_ != nullptr && !parent_->enabled()) {
        return operation.precondition_not_met("the entity that contains it is enabled");
    }
    {
        const std::lock_guard guard(enabling_);
        if (enabled()) {
            return Status::ok;
        }
        const engine::Created created = create_in_engine(operation);
        if (!created) {
            return operation.failed("enabling", created.status);
        }
        engine_id_.store(created.entity);
    }
    // The listener comes last, so that a callback meets an entity in full operation. Earlier
    // changes of a status are announced now.
    const Status listening = refresh_own_listener();
    if (listening != Status::ok) {
        return operation.failed("enabling the listener", listening);
    }
    const Status result = status_condition_.entity_enabled();
    return result == Status::ok ? enable_contained(operation) : result;
}

engine::Created Entity::allowed(const Operation& operation, const char* topic,
                                const engine::Created& created) {
    if (created.status == Status::not_allowed_by_security) {
        // The caller reports its own failure, too.
        static_cast<void>(operation.not_allowed(topic));
    }
    return created;
}

Status Entity::close(const Operation& operation) {
    const engine::EntityId id = engine_id();
    if (id != engine::no_entity) {
        const Status status = delete_in_engine(id);
        if (status != Status::ok) {
            return operation.failed("deletion", status);
        }
        engine_id_.store(engine::no_entity);
    }
    closed();
    return Status::ok;
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
    // Topics, publishers and subscribers have no GUID on the wire. Theirs has no prefix, so that it
    // equals no other entity's.
    engine::LocalHandle local = 0;
    if (engine::get_local_handle(id, local) != Status::ok) {
        return DDS_HANDLE_NIL;
    }
    std::memcpy(guid.data() + guid.size() - sizeof local, &local, sizeof local);
    return to_handle(guid);
}

Status Entity::set_listener(const Operation& operation, const ListenerSetting& setting) {
    const ListenerSetting old = listeners_.exchange(setting);
    const Status result = refresh_listeners();
    if (result != Status::ok) {
        listeners_.exchange(old);
        return operation.failed("setting the listener", result);
    }
    return Status::ok;
}

Status Entity::refresh_listeners() {
    const Status result = refresh_own_listener();
    if (result == Status::ok) {
        refresh_contained_listeners();
    }
    return result;
}

engine::ListenerSetting Entity::engine_listener() {
    engine::Listener* listener = dispatch();
    const engine::StatusMask mask = listeners_.taken() & statuses();
    return {mask != 0 ? listener : nullptr, listener != nullptr ? mask : 0};
}

Status Entity::refresh_own_listener() {
    const engine::EntityId id = engine_id();
    if (id == engine::no_entity || dispatch() == nullptr) {
        return Status::ok;
    }
    // Another thread may change a listener of the chain meanwhile and compute a newer mask. If the
    // call with the older mask comes last, it is made again.
    engine::ListenerSetting setting;
    Status status = Status::ok;
    do {
        setting = engine_listener();
        status = engine::set_listener(id, setting);
    } while (status == Status::ok && setting.mask != engine_listener().mask);
    return status;
}

Status Entity::change_in_engine(const Operation& operation, const engine::Qos& qos) const {
    const engine::EntityId id = engine_id();
    if (id == engine::no_entity) {
        return Status::ok;
    }
    const Status status = engine::set_qos(id, qos);
    return status == Status::ok ? Status::ok : operation.failed("changing the QoS", status);
}

}  // namespace pexa::dds

namespace dds = pexa::dds;

DDS_ReturnCode_t DDS_Entity_enable(DDS_Entity* self) {
    return dds::call(__func__, self, &dds::Entity::enable);
}

DDS_Boolean DDS_Entity_is_enabled(DDS_Entity* self) {
    return dds::call(__func__, self, &dds::Entity::enabled);
}

DDS_StatusMask DDS_Entity_get_status_changes(DDS_Entity* self) {
    return dds::call(__func__, self, &dds::Entity::status_changes);
}

DDS_InstanceHandle_t DDS_Entity_get_instance_handle(DDS_Entity* self) {
    return dds::call(__func__, self, &dds::Entity::instance_handle);
}

DDS_StatusCondition* DDS_Entity_get_statuscondition(DDS_Entity* self) {
    return dds::call(__func__, self, &dds::Entity::status_condition);
}

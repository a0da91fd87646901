/// @file qos_entity.hpp
/// @brief Entities with a QoS, and the defaults that they take it from.
#pragma once

#include <utility>

#include "platform/dds/entity/default_qos.hpp"
#include "platform/dds/entity/entity.hpp"
#include "platform/dds/qos/kept_qos.hpp"

namespace pexa::dds {

/// An entity with a QoS of this type.
template <typename Record>
class QosEntity : public Entity {
public:
    Status get_qos(Record& qos) const { return qos_.copy_to(qos); }

    /// @param qos NULL for the default
    Status set_qos(const Operation& operation, const Record* qos);

    /// Gives a new entity its QoS and listener, before others know it.
    /// @param qos NULL for the default
    Status prepare(const Operation& operation, const Record* qos, const ListenerSetting& listener);

    /// @return whether entities that are created in it are enabled at once.
    bool enables_contained() const {
        return enabled() && qos_.with_lock([](const Record& record) {
            return record.entity_factory.autoenable_created_entities != DDS_BOOLEAN_FALSE;
        });
    }

protected:
    /// @param defaults the parent's, which outlives this entity
    QosEntity(const Entity* parent, const DefaultQos<Record>& defaults)
        : Entity(parent), defaults_(defaults) {}

    Status to_engine_qos(engine::Qos& qos) const {
        return qos_.with_lock([&](const Record& record) { return to_engine(record, qos); });
    }
    KeptQos<Record>& kept_qos() { return qos_; }
    /// @return the topic that it is about, NULL if it is not.
    virtual const char* topic_name() const { return nullptr; }

private:
    /// @param copy takes the default
    /// @return @p qos, or @p copy for NULL; after a report a failure without memory, or when the
    /// default profile is refused
    Result<const Record*> choose(const Operation& operation, const Record* qos,
                                 OwnedQos<Record>& copy) const;

    const DefaultQos<Record>& defaults_;
    KeptQos<Record> qos_;
};

template <typename Record>
Result<const Record*> QosEntity<Record>::choose(const Operation& operation, const Record* qos,
                                                OwnedQos<Record>& copy) const {
    if (qos != nullptr) {
        return qos;
    }
    const Status copied = defaults_.copy_to(operation, topic_name(), copy.get());
    if (copied == Status::out_of_resources) {
        return operation.out_of_memory();
    }
    if (copied != Status::ok) {
        return copied;
    }
    return &std::as_const(copy).get();
}

template <typename Record>
Status QosEntity<Record>::prepare(const Operation& operation, const Record* qos,
                                  const ListenerSetting& listener) {
    OwnedQos<Record> copy;
    const Result<const Record*> choice = choose(operation, qos, copy);
    if (!choice) {
        return choice.status();
    }
    const Record& chosen = *choice.value();
    const Status checked = check_qos(operation.name(), chosen);
    if (checked != Status::ok) {
        return checked;
    }
    set_first_listener(listener);
    return qos_.assign(chosen) == Status::ok ? Status::ok : operation.out_of_memory();
}

template <typename Record>
Status QosEntity<Record>::set_qos(const Operation& operation, const Record* qos) {
    OwnedQos<Record> copy;
    const Result<const Record*> choice = choose(operation, qos, copy);
    if (!choice) {
        return choice.status();
    }
    const Record& wanted = *choice.value();
    // A copy, used without the lock: a refusal is reported, and the logger's device may ask for
    // this very QoS.
    OwnedQos<Record> current;
    if (qos_.copy_to(current.get()) != Status::ok) {
        return operation.out_of_memory();
    }
    const Status checked = enabled() ? check_qos_change(operation.name(), current.get(), wanted)
                                     : check_qos(operation.name(), wanted);
    if (checked != Status::ok) {
        return checked;
    }
    engine::Qos engine_qos;
    if (to_engine(wanted, engine_qos) != Status::ok) {
        return operation.out_of_memory();
    }
    // The policy cannot have changed. The engine's own of a writer differs: it follows the history.
    engine_qos.durability_service.reset();
    const Status changed = change_in_engine(operation, engine_qos);
    return changed == Status::ok ? qos_.assign(wanted) : changed;
}

}  // namespace pexa::dds

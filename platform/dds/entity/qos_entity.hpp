/// @file qos_entity.hpp
/// @brief Entities with a QoS, and the defaults that they take it from.
#pragma once

#include "platform/dds/entity/default_qos.hpp"
#include "platform/dds/entity/entity.hpp"
#include "platform/dds/qos/kept_qos.hpp"

namespace pexa::dds {

/// An entity with a QoS of this type.
template <typename Record>
class QosEntity : public Entity {
public:
    [[nodiscard]] DDS_ReturnCode_t get_qos(Record& qos) const { return qos_.copy_to(qos); }

    /// @param qos NULL for the default
    [[nodiscard]] DDS_ReturnCode_t set_qos(const Operation& operation, const Record* qos);

    /// Gives an entity that nobody knows yet its QoS and listener. @param qos NULL for the default
    [[nodiscard]] DDS_ReturnCode_t prepare(const Operation& operation, const Record* qos,
                                           const ListenerSetting& listener);

    /// @return whether what is created in it is enabled at once.
    [[nodiscard]] bool enables_contained() const {
        return enabled() != 0 && qos_.with_lock([](const Record& record) {
            return record.entity_factory.autoenable_created_entities != DDS_BOOLEAN_FALSE;
        });
    }

protected:
    /// @param defaults the parent's, which outlives this entity
    QosEntity(const Entity* parent, const DefaultQos<Record>& defaults)
        : Entity(parent), defaults_(defaults) {}

    [[nodiscard]] DDS_ReturnCode_t to_engine_qos(engine::Qos& qos) const {
        return qos_.with_lock([&](const Record& record) { return to_engine(record, qos); });
    }
    [[nodiscard]] KeptQos<Record>& kept_qos() { return qos_; }
    /// @return the topic that it is about, NULL if it is not.
    [[nodiscard]] virtual const char* topic_name() const { return nullptr; }

private:
    /// Gives @p qos or a copy of the default.
    [[nodiscard]] const Record* choose(const Operation& operation, const Record* qos,
                                       OwnedQos<Record>& copy) const;

    const DefaultQos<Record>& defaults_;
    KeptQos<Record> qos_;
};

template <typename Record>
const Record* QosEntity<Record>::choose(const Operation& operation, const Record* qos,
                                        OwnedQos<Record>& copy) const {
    if (qos != nullptr) {
        return qos;
    }
    if (defaults_.copy_to(operation, topic_name(), copy.get()) != DDS_RETCODE_OK) {
        static_cast<void>(operation.out_of_memory());
        return nullptr;
    }
    return &copy.get();
}

template <typename Record>
DDS_ReturnCode_t QosEntity<Record>::prepare(const Operation& operation, const Record* qos,
                                            const ListenerSetting& listener) {
    OwnedQos<Record> copy;
    const Record* chosen = choose(operation, qos, copy);
    if (chosen == nullptr) {
        return DDS_RETCODE_OUT_OF_RESOURCES;
    }
    const DDS_ReturnCode_t checked = check_qos(operation.name(), *chosen);
    if (checked != DDS_RETCODE_OK) {
        return checked;
    }
    set_first_listener(listener);
    return qos_.assign(*chosen) == DDS_RETCODE_OK ? DDS_RETCODE_OK : operation.out_of_memory();
}

template <typename Record>
DDS_ReturnCode_t QosEntity<Record>::set_qos(const Operation& operation, const Record* qos) {
    OwnedQos<Record> copy;
    const Record* wanted = choose(operation, qos, copy);
    if (wanted == nullptr) {
        return DDS_RETCODE_OUT_OF_RESOURCES;
    }
    // A copy: what is refused is reported, and the logger's device may ask for this very QoS.
    OwnedQos<Record> current;
    if (qos_.copy_to(current.get()) != DDS_RETCODE_OK) {
        return operation.out_of_memory();
    }
    const DDS_ReturnCode_t checked =
        enabled() != 0 ? check_qos_change(operation.name(), current.get(), *wanted)
                       : check_qos(operation.name(), *wanted);
    if (checked != DDS_RETCODE_OK) {
        return checked;
    }
    engine::Qos engine_qos;
    if (to_engine(*wanted, engine_qos) != DDS_RETCODE_OK) {
        return operation.out_of_memory();
    }
    // It cannot have changed, and the engine's own of a writer is another one: it follows the
    // history.
    engine_qos.durability_service.reset();
    const DDS_ReturnCode_t changed = change_in_engine(operation, engine_qos);
    return changed == DDS_RETCODE_OK ? qos_.assign(*wanted) : changed;
}

}  // namespace pexa::dds

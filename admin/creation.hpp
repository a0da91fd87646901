/// @file creation.hpp
/// @brief The shape that the creation of every entity has.
#pragma once

#include "admin/entity_qos.hpp"
#include "core/outcome.hpp"
#include "pexa/base.h"

namespace orvane::admin {

/// Obtains a QoS, creates an entity with it and finalises the QoS.
///
/// @param entity receives what @p create returns
/// @param obtain_qos gets the QoS record to fill, returns a code
/// @param create gets the filled QoS, returns the entity or NULL
template <typename Qos, typename Entity, typename ObtainQos, typename Create>
core::Outcome create_with_qos(Entity*& entity, ObtainQos obtain_qos, const char* qos_failure,
                              Create create, const char* create_failure) {
    ScopedQos<Qos> qos;
    if (obtain_qos(qos.get()) != DDS_RETCODE_OK) {
        return core::Outcome::failed(qos_failure);
    }
    entity = create(qos.get());
    return core::Outcome::done_if(entity != nullptr, create_failure);
}

}  // namespace orvane::admin

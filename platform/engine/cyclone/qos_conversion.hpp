/// @file qos_conversion.hpp
/// @brief QoS values to and from Cyclone's QoS object.
#pragma once

#include <dds/dds.h>

#include <memory>

#include "platform/engine/qos.hpp"

namespace pexa::engine::cyclone {

struct QosDelete {
    void operator()(dds_qos_t* qos) const { dds_delete_qos(qos); }
};
using QosPtr = std::unique_ptr<dds_qos_t, QosDelete>;

/// @return an object with the policies that are present in @p qos
QosPtr to_cyclone(const Qos& qos);

/// @return the policies that are set in @p qos
Qos from_cyclone(const dds_qos_t* qos);

}  // namespace pexa::engine::cyclone

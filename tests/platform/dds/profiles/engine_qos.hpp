#pragma once

#include <gtest/gtest.h>

#include "platform/dds/domain/participant.hpp"
#include "platform/dds/endpoints/reader.hpp"
#include "platform/dds/endpoints/writer.hpp"

/// What the engine made of an entity's QoS.
template <typename Handle>
pexa::engine::Qos engine_qos(Handle* entity) {
    pexa::engine::Qos qos;
    EXPECT_EQ(pexa::engine::get_qos(pexa::dds::object_of(entity)->engine_id(), qos),
              pexa::Status::ok);
    return qos;
}

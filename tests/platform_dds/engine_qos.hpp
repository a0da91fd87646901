#pragma once

#include <gtest/gtest.h>

#include "dds/participant.hpp"
#include "dds/reader.hpp"
#include "dds/writer.hpp"

/// What the engine made of an entity's QoS.
template <typename Handle>
pexa::engine::Qos engine_qos(Handle* entity) {
    pexa::engine::Qos qos;
    EXPECT_EQ(pexa::engine::get_qos(pexa::dds::object_of(entity)->engine_id(), qos),
              pexa::engine::Status::ok);
    return qos;
}

#include <gtest/gtest.h>

#include "platform/engine/cyclone/qos_conversion.hpp"
#include "tests/platform/engine/every_policy.hpp"

namespace pexa::engine {
namespace {

TEST(QosConversion, KeepsEveryPolicyAndAddsNone) {
    Qos every = every_policy();
    every.batching.reset();  // The engine's QoS has no such policy.
    for (const Qos& qos : {every, Qos{}}) {
        EXPECT_EQ(cyclone::from_cyclone(cyclone::to_cyclone(qos).get()), qos);
    }
}

}  // namespace
}  // namespace pexa::engine

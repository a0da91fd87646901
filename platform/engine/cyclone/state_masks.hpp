/// @file state_masks.hpp
/// @brief Sample, view and instance states in Cyclone's form and in ours.
#pragma once

#include <dds/dds.h>

#include "platform/engine/type.hpp"

namespace pexa::engine::cyclone {

// Cyclone keeps the three kinds of state in one mask, one after the other.
constexpr unsigned view_shift = 2;
constexpr unsigned instance_shift = 4;
static_assert(sample_read == DDS_READ_SAMPLE_STATE && sample_not_read == DDS_NOT_READ_SAMPLE_STATE);
static_assert(view_new << view_shift == DDS_NEW_VIEW_STATE &&
              view_not_new << view_shift == DDS_NOT_NEW_VIEW_STATE);
static_assert(instance_alive << instance_shift == DDS_ALIVE_INSTANCE_STATE &&
              instance_disposed << instance_shift == DDS_NOT_ALIVE_DISPOSED_INSTANCE_STATE &&
              instance_no_writers << instance_shift == DDS_NOT_ALIVE_NO_WRITERS_INSTANCE_STATE);

/// @return Cyclone's mask, or 0 when nothing can match: Cyclone takes a kind without bits for
/// any state
constexpr std::uint32_t to_cyclone(const StateMask& states) {
    const std::uint32_t sample = states.sample_states & DDS_ANY_SAMPLE_STATE;
    const std::uint32_t view = (states.view_states << view_shift) & DDS_ANY_VIEW_STATE;
    const std::uint32_t instance =
        (states.instance_states << instance_shift) & DDS_ANY_INSTANCE_STATE;
    return sample == 0 || view == 0 || instance == 0 ? 0 : sample | view | instance;
}
static_assert(to_cyclone({.sample_states = 0}) == 0 && to_cyclone({.view_states = 0}) == 0 &&
              to_cyclone({.instance_states = 0}) == 0);

SampleInfo from_cyclone(const dds_sample_info_t& info, const KeyHash& instance);

}  // namespace pexa::engine::cyclone

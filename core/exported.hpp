/// @file exported.hpp
/// @brief Results as the C interface gives them.
#pragma once

#include "pexa/base.h"
#include "platform/internal/status.hpp"

namespace orvane::core {

constexpr DDS_ReturnCode_t to_return_code(pexa::Status status) noexcept {
    return static_cast<DDS_ReturnCode_t>(status);
}

constexpr DDS_Boolean to_boolean(pexa::Status status) noexcept {
    return status == pexa::Status::ok ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
}

}  // namespace orvane::core

/// @file result.hpp
/// @brief Results of C++ functions in the form of the C interface.
#pragma once

#include "pexa/base.h"
#include "platform/internal/status.hpp"

namespace pexa::base {

inline DDS_Boolean to_boolean(bool value) {
    return value ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
}
inline DDS_Boolean to_boolean(Status result) {
    return to_boolean(result == Status::ok);
}

}  // namespace pexa::base

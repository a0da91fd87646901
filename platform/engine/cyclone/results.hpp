/// @file results.hpp
/// @brief Translation of Cyclone's return values.
#pragma once

#include <dds/dds.h>

#include "platform/engine/values.hpp"

namespace pexa::engine::cyclone {

/// @param result a return code, or a count or handle, which are ok.
constexpr Status status_of(dds_return_t result) {
    if (result >= 0) {
        return Status::ok;
    }
    if (result == DDS_RETCODE_NOT_ALLOWED_BY_SECURITY) {
        return Status::not_allowed_by_security;
    }
    return result >= DDS_RETCODE_ILLEGAL_OPERATION ? static_cast<Status>(-result) : Status::error;
}

constexpr Created created(dds_entity_t result) {
    return result > 0 ? Created{Status::ok, result} : Created{status_of(result), no_entity};
}

}  // namespace pexa::engine::cyclone

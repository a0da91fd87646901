/// @file payload_access.hpp
/// @brief Makes payloads of Cyclone samples.
#pragma once

#include "platform/engine/cyclone/serdata.hpp"
#include "platform/engine/type.hpp"

namespace pexa::engine {

struct PayloadAccess {
    /// Takes over the reference.
    static Payload adopt(cyclone::SerdataPtr data) {
        Payload payload;
        payload.buffer_ = data.release();
        return payload;
    }
};

}  // namespace pexa::engine

#include "platform/engine/cyclone/serdata.hpp"
#include "platform/engine/type.hpp"

namespace pexa::engine {

namespace {

const cyclone::Serdata& serdata_of(const void* buffer) {
    return *static_cast<const cyclone::Serdata*>(buffer);
}

constexpr KeyHash no_key{};

}  // namespace

Payload::Payload(const Payload& other) : buffer_(other.buffer_) {
    if (buffer_ != nullptr) {
        ddsi_serdata_ref(static_cast<cyclone::Serdata*>(buffer_));
    }
}

Payload::~Payload() {
    if (buffer_ != nullptr) {
        ddsi_serdata_unref(static_cast<cyclone::Serdata*>(buffer_));
    }
}

std::span<const std::byte> Payload::bytes() const {
    return buffer_ == nullptr ? std::span<const std::byte>{} : serdata_of(buffer_).bytes();
}

const KeyHash& Payload::key_hash() const {
    return buffer_ == nullptr ? no_key : serdata_of(buffer_).key;
}

PayloadKind Payload::kind() const {
    return buffer_ != nullptr && serdata_of(buffer_).kind == SDK_DATA ? PayloadKind::data
                                                                      : PayloadKind::key;
}

}  // namespace pexa::engine

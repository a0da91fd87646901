#include "platform/dds/endpoints/typed_endpoint.hpp"

#include "platform/dds/interface/value_conversion.hpp"

namespace pexa::dds {

Status TypedEndpoint::attach(const Operation& operation) {
    codec_ = type_->attach(kind_);
    return codec_ != nullptr ? Status::ok
                             : operation.not_created("endpoint data", Status::out_of_resources);
}

DDS_InstanceHandle_t TypedEndpoint::handle_of_instance(const engine::KeyHash& hash) const {
    return type_->keyed() ? to_handle(hash) : DDS_HANDLE_NIL;
}

Status TypedEndpoint::get_key_value(const Operation& operation, engine::EntityId endpoint,
                                    void* sample, const DDS_InstanceHandle_t& handle) {
    if (endpoint == engine::no_entity) {
        return Status::not_enabled;
    }
    const std::optional<engine::KeyHash> hash = to_key_hash(handle);
    engine::Payload key;
    if (!hash || !type_->keyed() || engine::get_key(endpoint, *hash, key) != Status::ok) {
        return operation.bad_parameter("handle");
    }
    const auto guard = lock();
    return codec_->decode_key(key.bytes(), sample) == Status::ok
               ? Status::ok
               : operation.failed("decoding the key", Status::error);
}

DDS_InstanceHandle_t TypedEndpoint::lookup_instance(engine::EntityId endpoint, const void* sample) {
    if (endpoint == engine::no_entity || !type_->keyed()) {
        return DDS_HANDLE_NIL;
    }
    engine::KeyHash hash;
    {
        const auto guard = lock();
        if (codec_->key_hash(sample, hash) != Status::ok) {
            return DDS_HANDLE_NIL;
        }
    }
    return engine::knows_instance(endpoint, hash) ? to_handle(hash) : DDS_HANDLE_NIL;
}

}  // namespace pexa::dds

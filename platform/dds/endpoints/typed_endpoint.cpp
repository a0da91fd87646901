#include "platform/dds/endpoints/typed_endpoint.hpp"

#include "platform/dds/interface/value_conversion.hpp"

namespace pexa::dds {

DDS_ReturnCode_t TypedEndpoint::attach(const Operation& operation, TULVEndpointKind kind) {
    codec_ = type_->attach(kind);
    return codec_ != nullptr ? DDS_RETCODE_OK
                             : operation.not_created("endpoint data", DDS_RETCODE_OUT_OF_RESOURCES);
}

DDS_InstanceHandle_t TypedEndpoint::handle_of_instance(const engine::KeyHash& hash) const {
    return type_->keyed() ? to_handle(hash) : DDS_HANDLE_NIL;
}

DDS_ReturnCode_t TypedEndpoint::get_key_value(const Operation& operation, engine::EntityId endpoint,
                                              void* sample, const DDS_InstanceHandle_t& handle) {
    if (endpoint == engine::no_entity) {
        return DDS_RETCODE_NOT_ENABLED;
    }
    const std::optional<engine::KeyHash> hash = to_key_hash(handle);
    engine::Payload key;
    if (!hash || !type_->keyed() || engine::get_key(endpoint, *hash, key) != Status::ok) {
        return operation.bad_parameter("handle");
    }
    const auto guard = lock();
    return codec_->decode_key(key.bytes(), sample)
               ? DDS_RETCODE_OK
               : operation.failed("decoding the key", DDS_RETCODE_ERROR);
}

DDS_InstanceHandle_t TypedEndpoint::lookup_instance(engine::EntityId endpoint, const void* sample) {
    if (endpoint == engine::no_entity || !type_->keyed()) {
        return DDS_HANDLE_NIL;
    }
    engine::KeyHash hash;
    {
        const auto guard = lock();
        if (!codec_->key_hash(sample, hash)) {
            return DDS_HANDLE_NIL;
        }
    }
    return engine::knows_instance(endpoint, hash) ? to_handle(hash) : DDS_HANDLE_NIL;
}

}  // namespace pexa::dds

/// @file typed_endpoint.hpp
/// @brief The type of a reader or writer, and its codec.
#pragma once

#include <memory>
#include <mutex>

#include "platform/dds/payload/type_adapter.hpp"
#include "platform/engine/engine.hpp"

namespace pexa::dds {

/// The type of an endpoint and the codec that is the endpoint's own.
class TypedEndpoint {
public:
    TypedEndpoint(std::shared_ptr<const TypeAdapter> type, TULVEndpointKind kind)
        : type_(std::move(type)), kind_(kind) {}

    /// Makes the codec.
    Status attach(const Operation& operation);

    const TypeAdapter& type() const { return *type_; }
    /// The codec, to be used with the lock held.
    Codec& codec() { return *codec_; }
    std::unique_lock<std::mutex> lock() { return std::unique_lock(mutex_); }

    /// @return the handle of an instance, NIL for a keyless type.
    DDS_InstanceHandle_t handle_of_instance(const engine::KeyHash& hash) const;
    /// Fills the key members of @p sample with those of an instance that @p endpoint knows.
    Status get_key_value(const Operation& operation, engine::EntityId endpoint, void* sample,
                         const DDS_InstanceHandle_t& handle);
    /// @return the handle of the sample's instance if @p endpoint knows it, else NIL.
    DDS_InstanceHandle_t lookup_instance(engine::EntityId endpoint, const void* sample);

private:
    std::shared_ptr<const TypeAdapter> type_;
    TULVEndpointKind kind_;
    std::unique_ptr<Codec> codec_;
    std::mutex mutex_;
};

}  // namespace pexa::dds

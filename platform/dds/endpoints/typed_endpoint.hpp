/// @file typed_endpoint.hpp
/// @brief What readers and writers do with their type alike.
#pragma once

#include <memory>
#include <mutex>

#include "platform/dds/payload/type_adapter.hpp"
#include "platform/engine/engine.hpp"

namespace pexa::dds {

/// The type of an endpoint and the codec that is the endpoint's own.
class TypedEndpoint {
public:
    explicit TypedEndpoint(std::shared_ptr<const TypeAdapter> type) : type_(std::move(type)) {}

    [[nodiscard]] DDS_ReturnCode_t attach(const Operation& operation, TULVEndpointKind kind);

    [[nodiscard]] const TypeAdapter& type() const { return *type_; }
    /// The codec, to be used with the lock held.
    [[nodiscard]] Codec& codec() { return *codec_; }
    [[nodiscard]] std::unique_lock<std::mutex> lock() { return std::unique_lock(mutex_); }

    /// @return the handle of an instance, NIL for a keyless type.
    [[nodiscard]] DDS_InstanceHandle_t handle_of_instance(const engine::KeyHash& hash) const;
    /// Fills the key members of @p sample with those of an instance that @p endpoint knows.
    [[nodiscard]] DDS_ReturnCode_t get_key_value(const Operation& operation,
                                                 engine::EntityId endpoint, void* sample,
                                                 const DDS_InstanceHandle_t& handle);
    /// @return the handle of the sample's instance if @p endpoint knows it, else NIL.
    [[nodiscard]] DDS_InstanceHandle_t lookup_instance(engine::EntityId endpoint,
                                                       const void* sample);

private:
    std::shared_ptr<const TypeAdapter> type_;
    std::unique_ptr<Codec> codec_;
    std::mutex mutex_;
};

}  // namespace pexa::dds

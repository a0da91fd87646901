/// @file type_adapter.hpp
/// @brief A registered type: the plugin's copy, and the engine's view of it.
#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "platform/dds/interface/operation.hpp"
#include "platform/dds/payload/codec.hpp"
#include "platform/engine/type.hpp"

namespace pexa::dds {

/// A type under the name that it is registered by. Shared with the engine, which may keep it longer
/// than the participant lives.
class TypeAdapter final : public engine::Type {
public:
    /// @return after a report BAD_PARAMETER for an incomplete plugin, ERROR for one that refuses
    static Result<std::shared_ptr<const TypeAdapter>> create(const Operation& operation,
                                                             const char* registered_name,
                                                             const TULVTypePlugin& plugin);
    ~TypeAdapter() override;

    const char* name() const override { return registered_name_.c_str(); }
    bool keyed() const override { return keyed_; }
    std::optional<engine::KeyHash> accept(engine::PayloadKind kind,
                                          std::span<const std::byte> payload) const override;
    bool write_key(std::span<const std::byte> data,
                   engine::FunctionRef<std::byte*(std::size_t)> allocate) const override;

    /// @return whether the plugin is of the type of this name, which need not be the registered
    /// one.
    bool is_of(const char* type_name) const;
    const DDS_TypeCode* type_code() const { return plugin_.typeCode; }

    /// @return a codec for an endpoint, which must keep the adapter alive, or NULL.
    std::unique_ptr<Codec> attach(TULVEndpointKind kind) const;

private:
    struct Scratch;
    class BorrowedScratch;

    TypeAdapter(const char* registered_name, const TULVTypePlugin& plugin);

    std::string registered_name_;
    TULVTypePlugin plugin_;
    bool keyed_;
    TULVParticipantData participant_data_ = nullptr;
    /// Codecs and samples that accept() and write_key() decode with. There are as many as threads
    /// ever ran these operations at the same time.
    mutable std::mutex idle_mutex_;
    mutable std::unique_ptr<Scratch> idle_;
};

}  // namespace pexa::dds

/// @file serdata.hpp
/// @brief Encoded samples in Cyclone's memory.
#pragma once

#include <dds/ddsi/ddsi_serdata.h>

#include <memory>
#include <span>

#include "platform/engine/cyclone/sertype.hpp"
#include "platform/engine/type.hpp"

namespace pexa::engine::cyclone {

/// One allocation: this header or a longer one, then the payload. Cyclone counts the references and
/// fixes the meaning of the base's members; `type` is not owned and may dangle once topics are
/// deleted, so nothing that can happen later looks at it.
struct Serdata : ddsi_serdata {
    KeyHash key{};
    SampleOrigin origin;
    std::uint64_t type_number = 0;
    std::uint32_t size = 0;
    std::uint32_t header_size = 0;

    std::byte* data() { return reinterpret_cast<std::byte*>(this) + header_size; }
    const std::byte* data() const { return reinterpret_cast<const std::byte*>(this) + header_size; }
    std::span<const std::byte> bytes() const { return {data(), size}; }
    std::span<std::byte> writable_bytes() { return {data(), size}; }

    void set_key(const KeyHash& hash);
};

/// Stands for an instance in Cyclone's map: its key, and its place in the index. Cyclone may keep
/// it when all topics are gone. So it must not keep the type alive.
struct InstanceSerdata : Serdata {
    InstanceIndex::Place place;
    std::shared_ptr<InstanceIndex> index;
};

struct SerdataRelease {
    void operator()(Serdata* data) const { ddsi_serdata_unref(data); }
};
/// One reference.
using SerdataPtr = std::unique_ptr<Serdata, SerdataRelease>;

/// @return a sample with room for @p size bytes and without key, or NULL without memory
SerdataPtr make_serdata(const ddsi_sertype* type, ddsi_serdata_kind kind, std::size_t size);

/// @return the key of @p data and nothing else, or NULL without memory
SerdataPtr make_key_serdata(const Serdata& data);

/// What Cyclone takes for a sample of the application, in look-ups, filters and key queries.
struct SampleView {
    KeyHash key{};                  ///< in: the instance to look for
    const Serdata* data = nullptr;  ///< out: the sample; a reference only from key queries
};

extern const ddsi_serdata_ops serdata_ops;

}  // namespace pexa::engine::cyclone

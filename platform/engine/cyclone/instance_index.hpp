/// @file instance_index.hpp
/// @brief The instances of a type that Cyclone knows at present, in the order of their keys.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>

#include "platform/engine/values.hpp"

namespace pexa::engine::cyclone {

/// Mirrors Cyclone's own map from keys to instances, which can neither be listed nor asked for
/// an order. An instance of several domains counts once for each. Thread-safe; takes no other lock.
class InstanceIndex {
public:
    void add(const KeyHash& key);
    void remove(const KeyHash& key);

    /// @param previous NULL for the start
    /// @return the first key after @p previous
    std::optional<KeyHash> next(const KeyHash* previous) const;

private:
    mutable std::mutex mutex_;
    std::map<KeyHash, std::uint32_t> counts_;
};

}  // namespace pexa::engine::cyclone

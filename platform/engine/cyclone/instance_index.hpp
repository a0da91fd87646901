/// @file instance_index.hpp
/// @brief The instances of a type that Cyclone knows at present, in the order of their keys.
#pragma once

#include <dds/ddsrt/avl.h>

#include <mutex>
#include <optional>

#include "platform/engine/values.hpp"

namespace pexa::engine::cyclone {

/// Mirrors Cyclone's own map from keys to instances, which can neither be listed nor asked for
/// an order. An instance of several domains is in it once for each. Thread-safe; takes no other
/// lock. It allocates nothing, because Cyclone cannot be refused an instance.
class InstanceIndex {
public:
    /// The place of an instance, which whoever adds it provides.
    struct Place {
        ddsrt_avl_node_t node{};
        KeyHash key{};
    };

    InstanceIndex();

    /// @param place stays where it is until it is removed
    void add(Place& place);
    void remove(Place& place);

    /// @param previous NULL for the start
    /// @return the first key after @p previous
    std::optional<KeyHash> next(const KeyHash* previous) const;

private:
    mutable std::mutex mutex_;
    ddsrt_avl_tree_t places_;
};

}  // namespace pexa::engine::cyclone

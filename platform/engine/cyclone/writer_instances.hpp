/// @file writer_instances.hpp
/// @brief The instances that a writer knows.
#pragma once

#include <mutex>
#include <unordered_map>

#include "platform/engine/cyclone/serdata.hpp"

namespace pexa::engine::cyclone {

/// The key payloads of the instances that a writer knows. Thread-safe.
class WriterInstances {
public:
    /// Adds the instance of a sample, unless it is there.
    /// @return ok, or out_of_resources with nothing changed. May throw std::bad_alloc instead.
    Status remember(const Serdata& sample);
    void remove(const KeyHash& instance);
    bool contains(const KeyHash& instance) const;
    /// @return bad_parameter for an unknown instance
    Status get_key(const KeyHash& instance, Payload& key) const;

private:
    struct HashKey {
        std::size_t operator()(const KeyHash& key) const noexcept;
    };

    mutable std::mutex mutex_;
    std::unordered_map<KeyHash, Payload, HashKey> keys_;
};

}  // namespace pexa::engine::cyclone

/// @file entity_table.hpp
/// @brief Records by entity.
#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>
#include <shared_mutex>

#include "platform/engine/values.hpp"

namespace pexa::engine::cyclone {

/// Records by entity. Thread-safe; a record that was found stays valid when it is removed.
template <typename Record>
class EntityTable {
    using Records = std::map<EntityId, std::shared_ptr<Record>>;

public:
    /// A record with the room that it will take in the table. It is made before its entity, so that
    /// nothing can fail once there is the entity.
    class Entry {
    public:
        explicit Entry(std::shared_ptr<Record> record) {
            Records one;
            one.emplace(no_entity, std::move(record));
            node_ = one.extract(one.begin());
        }

    private:
        friend class EntityTable;
        typename Records::node_type node_;
    };

    void add(EntityId entity, Entry entry) noexcept {
        entry.node_.key() = entity;
        // A record may end more than itself, and must do so without the lock.
        typename Records::node_type former;
        const std::unique_lock lock(mutex_);
        // An entity that was deleted behind the seam leaves its record, and its id comes again.
        former = records_.extract(entity);
        records_.insert(std::move(entry.node_));
    }
    void remove(EntityId entity) {
        typename Records::node_type removed;
        const std::unique_lock lock(mutex_);
        removed = records_.extract(entity);
    }
    /// @return NULL when there is none
    std::shared_ptr<Record> find(EntityId entity) const {
        const std::shared_lock lock(mutex_);
        const auto found = records_.find(entity);
        return found == records_.end() ? nullptr : found->second;
    }
    /// @return whether @p accepts says so of any entity; it must not use the table
    template <typename Predicate>
    bool any(const Predicate& accepts) const {
        const std::shared_lock lock(mutex_);
        return std::any_of(records_.begin(), records_.end(),
                           [&](const auto& entry) { return accepts(entry.first); });
    }

private:
    mutable std::shared_mutex mutex_;
    Records records_;
};

}  // namespace pexa::engine::cyclone

/// @file entity_table.hpp
/// @brief Records by entity.
#pragma once

#include <memory>
#include <mutex>
#include <shared_mutex>
#include <unordered_map>

#include "platform/engine/values.hpp"

namespace pexa::engine::cyclone {

/// Records by entity. Thread-safe; a record that was found stays valid when it is removed.
template <typename Record>
class EntityTable {
public:
    void add(EntityId entity, std::shared_ptr<Record> record) {
        const std::unique_lock lock(mutex_);
        records_.insert_or_assign(entity, std::move(record));
    }
    void remove(EntityId entity) {
        const std::unique_lock lock(mutex_);
        records_.erase(entity);
    }
    /// @return NULL when there is none
    std::shared_ptr<Record> find(EntityId entity) const {
        const std::shared_lock lock(mutex_);
        const auto found = records_.find(entity);
        return found == records_.end() ? nullptr : found->second;
    }
    /// Calls @p visit with every entity and its record; it must not use the table.
    template <typename Visit>
    void for_each(const Visit& visit) const {
        const std::shared_lock lock(mutex_);
        for (const auto& [entity, record] : records_) {
            visit(entity, *record);
        }
    }

private:
    mutable std::shared_mutex mutex_;
    std::unordered_map<EntityId, std::shared_ptr<Record>> records_;
};

}  // namespace pexa::engine::cyclone

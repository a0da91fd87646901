/// @file entity_table.hpp
/// @brief What is kept here for each entity beside the engine's own.
#pragma once

#include <dds/dds.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <unordered_map>
#include <vector>

#include "platform/engine/cyclone/sertype.hpp"
#include "platform/engine/engine.hpp"

namespace pexa::engine::cyclone {

/// A filter that can be replaced while readers use it.
class ReplaceableFilter {
public:
    explicit ReplaceableFilter(ContentFilter filter) { replace(std::move(filter)); }

    void replace(ContentFilter filter) {
        auto next = std::make_shared<const ContentFilter>(std::move(filter));
        const std::lock_guard lock(mutex_);
        filter_.swap(next);
    }
    [[nodiscard]] bool accepts(std::span<const std::byte> payload) const {
        return (*current())(payload);
    }

private:
    [[nodiscard]] std::shared_ptr<const ContentFilter> current() const {
        const std::lock_guard lock(mutex_);
        return filter_;
    }

    mutable std::mutex mutex_;
    std::shared_ptr<const ContentFilter> filter_;
};

struct TopicRecord {
    /// Registered; lives at least as long as the topic.
    const ddsi_sertype* sertype = nullptr;
    std::shared_ptr<SharedType> type;
    /// NULL for a topic without filter. The engine holds its address.
    std::shared_ptr<ReplaceableFilter> filter;
    /// Readers and writers; while there are any the topic cannot be deleted.
    std::atomic<int> endpoints{0};
};

/// An endpoint keeps the record of its topic, and with it the filter, as long as the engine may
/// use it.
class TopicUse {
public:
    explicit TopicUse(std::shared_ptr<TopicRecord> topic) : topic_(std::move(topic)) {
        ++topic_->endpoints;
    }
    TopicUse(const TopicUse&) = delete;
    TopicUse& operator=(const TopicUse&) = delete;
    ~TopicUse() { --topic_->endpoints; }

    [[nodiscard]] const TopicRecord& topic() const { return *topic_; }

private:
    std::shared_ptr<TopicRecord> topic_;
};

struct KeyHashHash {
    std::size_t operator()(const KeyHash& key) const noexcept;
};

/// What a batching writer has collected and not sent. The bounds are exact as long as one thread
/// writes at a time.
class Collection {
public:
    /// @param limit most samples, 0 for a writer that does not batch
    void set_limit(std::int64_t limit) { limit_ = limit; }

    /// @return whether it is time to send it, before the next write takes its time.
    [[nodiscard]] bool is_old() const;
    /// Notes that a sample was written. @return whether it is time to send it.
    [[nodiscard]] bool add();
    void clear() { samples_.store(0, std::memory_order_relaxed); }

private:
    std::int64_t limit_ = 0;
    std::atomic<std::int64_t> samples_{0};
    std::atomic<std::int64_t> first_at_{0};
};

struct WriterRecord {
    explicit WriterRecord(std::shared_ptr<TopicRecord> topic) : use(std::move(topic)) {}

    TopicUse use;
    Collection collection;
    std::atomic<bool> autodispose{true};
    std::mutex instances_mutex;
    /// The key payloads of the instances that the writer knows.
    std::unordered_map<KeyHash, Payload, KeyHashHash> instances;
};

struct ReaderRecord {
    explicit ReaderRecord(std::shared_ptr<TopicRecord> topic) : use(std::move(topic)) {}

    TopicUse use;
};

/// Kept of every entity that was created here.
struct EntityNote {
    /// What it was created in; none for participants.
    EntityId parent = no_entity;
    /// What was last set for the entity itself, not what it inherits.
    ListenerSetting listener;
};

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
    [[nodiscard]] std::shared_ptr<Record> find(EntityId entity) const {
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

[[nodiscard]] EntityTable<TopicRecord>& topics();
[[nodiscard]] EntityTable<WriterRecord>& writers();
[[nodiscard]] EntityTable<ReaderRecord>& readers();
[[nodiscard]] EntityTable<const EntityNote>& notes();

/// Notes an entity that was just created, if it was.
/// @param result what the engine's creating function returned
[[nodiscard]] Created note_creation(dds_entity_t result, EntityId parent,
                                    const ListenerSetting& listener);

/// Drops the records of an entity that the engine has deleted, and of what was in it.
void forget_with_contents(EntityId entity);

// The following are answered without the engine, which may hold locks of the entities while it
// runs a callback.

/// @return what an entity was created in; none for participants and what was not created here
[[nodiscard]] EntityId parent_of(EntityId entity);

/// @return what was created here in an entity, of any depth, parents first
[[nodiscard]] std::vector<EntityId> contents_of(EntityId entity);

}  // namespace pexa::engine::cyclone

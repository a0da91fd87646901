/// @file entity_records.hpp
/// @brief What is kept of topics, writers and readers beside Cyclone's own records.
#pragma once

#include <atomic>
#include <memory>

#include "platform/engine/cyclone/batch.hpp"
#include "platform/engine/cyclone/entity_table.hpp"
#include "platform/engine/cyclone/replaceable_filter.hpp"
#include "platform/engine/cyclone/sertype.hpp"
#include "platform/engine/cyclone/writer_instances.hpp"

namespace pexa::engine::cyclone {

struct TopicRecord {
    /// Registered; lives at least as long as the topic.
    const ddsi_sertype* sertype = nullptr;
    std::shared_ptr<SharedType> type;
    /// NULL for a topic without filter. Cyclone holds its address.
    std::shared_ptr<ReplaceableFilter> filter;
    /// Readers and writers. While there are any the topic cannot be deleted.
    std::atomic<int> endpoints{0};
};

/// An endpoint keeps the record of its topic, and with it the filter, as long as Cyclone may use
/// the filter.
class TopicUse {
public:
    explicit TopicUse(std::shared_ptr<TopicRecord> topic) : topic_(std::move(topic)) {
        ++topic_->endpoints;
    }
    TopicUse(const TopicUse&) = delete;
    TopicUse& operator=(const TopicUse&) = delete;
    ~TopicUse() { --topic_->endpoints; }

    const TopicRecord& topic() const { return *topic_; }

private:
    std::shared_ptr<TopicRecord> topic_;
};

struct WriterRecord {
    WriterRecord(std::shared_ptr<TopicRecord> topic, const Qos& qos)
        : use(std::move(topic)),
          batch(qos),
          autodispose(qos.autodispose_unregistered_instances.value_or(true)) {}

    TopicUse use;
    Batch batch;
    std::atomic<bool> autodispose;
    WriterInstances instances;
};

struct ReaderRecord {
    explicit ReaderRecord(std::shared_ptr<TopicRecord> topic) : use(std::move(topic)) {}

    TopicUse use;
};

EntityTable<TopicRecord>& topics();
EntityTable<WriterRecord>& writers();
EntityTable<ReaderRecord>& readers();

}  // namespace pexa::engine::cyclone

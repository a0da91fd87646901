/// @file topic.hpp
/// @brief Topics and what readers can be made on.
#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "platform/dds/entity/qos_entity.hpp"
#include "platform/dds/listeners/listener_dispatch.hpp"
#include "platform/dds/payload/type_adapter.hpp"

namespace pexa::dds {

/// A topic or a filtered topic: a name, a type, and users that keep it from being deleted.
class TopicDescription {
public:
    using Handle = DDS_TopicDescription;

    TopicDescription(const TopicDescription&) = delete;
    TopicDescription& operator=(const TopicDescription&) = delete;
    virtual ~TopicDescription() = default;

    [[nodiscard]] const char* name() const { return name_.c_str(); }
    [[nodiscard]] const char* type_name() const { return type_->name(); }
    [[nodiscard]] const std::shared_ptr<const TypeAdapter>& type() const { return type_; }
    [[nodiscard]] Participant* participant() const { return &participant_; }

    /// @return the engine's topic, no_entity while the topic is disabled or when it fails.
    [[nodiscard]] virtual engine::EntityId engine_topic(const Operation& operation) = 0;
    /// @return the name of the topic that the samples come from.
    [[nodiscard]] virtual const char* topic_name() const { return name(); }
    /// @return this, if it is a topic.
    [[nodiscard]] virtual Topic* as_topic() { return nullptr; }

    [[nodiscard]] bool in_use() const { return users_.load() != 0; }

protected:
    TopicDescription(Participant& participant, const char* name,
                     std::shared_ptr<const TypeAdapter> type)
        : participant_(participant), name_(name), type_(std::move(type)) {}

private:
    friend class TopicUse;

    Participant& participant_;
    std::string name_;
    std::shared_ptr<const TypeAdapter> type_;
    std::atomic<int> users_ = 0;
};

/// Keeps a topic from being deleted while it is used.
class TopicUse {
public:
    explicit TopicUse(TopicDescription& topic) : topic_(&topic) { ++topic.users_; }
    TopicUse(const TopicUse&) = delete;
    TopicUse& operator=(const TopicUse&) = delete;
    ~TopicUse() { end(); }

    void end() {
        if (topic_ != nullptr) {
            --topic_->users_;
            topic_ = nullptr;
        }
    }

private:
    TopicDescription* topic_;
};

class Topic final : public QosEntity<DDS_TopicQos>, public TopicDescription {
public:
    using Handle = DDS_Topic;

    Topic(Participant& participant, const char* name, std::shared_ptr<const TypeAdapter> type);

    [[nodiscard]] Entity* as_entity() { return this; }
    [[nodiscard]] TopicDescription* as_description() { return this; }
    [[nodiscard]] Topic* as_topic() override { return this; }
    [[nodiscard]] const char* topic_name() const override { return name(); }
    [[nodiscard]] engine::EntityId engine_topic(const Operation& operation) override;
    [[nodiscard]] engine::StatusMask statuses() const override {
        return engine::inconsistent_topic_status;
    }
    [[nodiscard]] DDS_ReturnCode_t get_inconsistent_topic_status(
        DDS_InconsistentTopicStatus& status) const;
    /// A topic matches no peers.
    [[nodiscard]] static DDS_InstanceHandle_t peer_handle(engine::LocalHandle /*peer*/) {
        return DDS_HANDLE_NIL;
    }

    /// Makes another topic of the engine with the policies of this one.
    [[nodiscard]] engine::Created create_filtered(const engine::ContentFilter& filter) const;

private:
    [[nodiscard]] engine::Created create_in_engine(const Operation& operation) override;
    [[nodiscard]] engine::Listener* dispatch() override { return &dispatch_; }

    TopicDispatch dispatch_{*this};
};

}  // namespace pexa::dds

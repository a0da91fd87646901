/// @file topic.hpp
/// @brief Topics, and topic descriptions, which readers are made on.
#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "platform/dds/entity/qos_entity.hpp"
#include "platform/dds/payload/type_adapter.hpp"

namespace pexa::dds {

/// A topic or a filtered topic: a name, a type, and users that keep it from being deleted.
class TopicDescription {
public:
    using Handle = DDS_TopicDescription;

    TopicDescription(const TopicDescription&) = delete;
    TopicDescription& operator=(const TopicDescription&) = delete;
    virtual ~TopicDescription() = default;

    const char* name() const { return name_.c_str(); }
    const char* type_name() const { return type_->name(); }
    const std::shared_ptr<const TypeAdapter>& type() const { return type_; }
    Participant* participant() const { return &participant_; }

    /// @return the engine's topic; PRECONDITION_NOT_MET while the topic is disabled, or after a
    /// report the engine's failure.
    virtual Result<engine::EntityId> engine_topic(const Operation& operation) = 0;
    /// @return the name of the topic that the samples come from.
    virtual const char* topic_name() const { return name(); }
    /// @return this, if it is a topic.
    virtual Topic* as_topic() { return nullptr; }

    bool in_use() const { return users_.load() != 0; }

protected:
    TopicDescription(Participant& participant, const char* name,
                     std::shared_ptr<const TypeAdapter> type)
        : participant_(participant), name_(name), type_(std::move(type)) {}

    static Result<engine::EntityId> result_of(engine::EntityId id);

private:
    friend class HeldTopic;

    Participant& participant_;
    std::string name_;
    std::shared_ptr<const TypeAdapter> type_;
    std::atomic<int> users_ = 0;
};

/// Keeps a topic from being deleted while it is used.
class HeldTopic {
public:
    explicit HeldTopic(TopicDescription& topic) : topic_(&topic) { ++topic.users_; }
    HeldTopic(const HeldTopic&) = delete;
    HeldTopic& operator=(const HeldTopic&) = delete;
    ~HeldTopic() { release(); }

    void release() {
        if (topic_ != nullptr) {
            --topic_->users_;
            topic_ = nullptr;
        }
    }

private:
    TopicDescription* topic_;
};

/// From a status change of a topic in the engine to the application's listener.
class TopicDispatch final : public engine::Listener {
public:
    explicit TopicDispatch(Topic& topic) : topic_(topic) {}

    void on_status(engine::EntityId id, engine::StatusMask kind,
                   const engine::CommunicationStatus& status) override;

private:
    Topic& topic_;
};

class Topic final : public QosEntity<DDS_TopicQos>, public TopicDescription {
public:
    using Handle = DDS_Topic;

    /// @param parent the participant as an entity
    /// @param defaults the participant's, for its topics
    Topic(Participant& participant, const Entity& parent, const DefaultQos<DDS_TopicQos>& defaults,
          const char* name, std::shared_ptr<const TypeAdapter> type);

    Entity* as_entity() { return this; }
    TopicDescription* as_description() { return this; }
    Topic* as_topic() override { return this; }
    const char* topic_name() const override { return name(); }
    Result<engine::EntityId> engine_topic(const Operation& operation) override;
    engine::StatusMask statuses() const override { return engine::inconsistent_topic_status; }
    Status get_inconsistent_topic_status(DDS_InconsistentTopicStatus& status) const;
    /// A topic matches no peers.
    static DDS_InstanceHandle_t peer_handle(engine::LocalHandle /*peer*/) { return DDS_HANDLE_NIL; }

    /// Makes another topic of the engine with the policies of this one.
    engine::Created create_filtered(const engine::ContentFilter& filter) const;

private:
    engine::Created create_in_engine(const Operation& operation) override;
    engine::Listener* dispatch() override { return &dispatch_; }

    TopicDispatch dispatch_{*this};
};

}  // namespace pexa::dds

/// @file listener_dispatch.hpp
/// @brief From a status change in the engine to the application's listener.
#pragma once

#include "platform/dds/interface/handle.hpp"
#include "platform/engine/listener.hpp"

namespace pexa::dds {

/// @name The engine's listener of each kind of entity
/// Each passes a status, converted, to the nearest listener of its entity that takes it.
/// @{
class TopicDispatch final : public engine::Listener {
public:
    explicit TopicDispatch(Topic& topic) : topic_(topic) {}

    void on_inconsistent_topic(engine::EntityId id,
                               const engine::InconsistentTopic& status) override;

private:
    Topic& topic_;
};

class WriterDispatch final : public engine::Listener {
public:
    explicit WriterDispatch(DataWriter& writer) : writer_(writer) {}

    void on_offered_deadline_missed(engine::EntityId id,
                                    const engine::OfferedDeadlineMissed& status) override;
    void on_offered_incompatible_qos(engine::EntityId id,
                                     const engine::OfferedIncompatibleQos& status) override;
    void on_liveliness_lost(engine::EntityId id, const engine::LivelinessLost& status) override;
    void on_publication_matched(engine::EntityId id,
                                const engine::PublicationMatched& status) override;

private:
    DataWriter& writer_;
};

class ReaderDispatch final : public engine::Listener {
public:
    explicit ReaderDispatch(DataReader& reader) : reader_(reader) {}

    void on_requested_deadline_missed(engine::EntityId id,
                                      const engine::RequestedDeadlineMissed& status) override;
    void on_requested_incompatible_qos(engine::EntityId id,
                                       const engine::RequestedIncompatibleQos& status) override;
    void on_sample_lost(engine::EntityId id, const engine::SampleLost& status) override;
    void on_sample_rejected(engine::EntityId id, const engine::SampleRejected& status) override;
    void on_liveliness_changed(engine::EntityId id,
                               const engine::LivelinessChanged& status) override;
    void on_subscription_matched(engine::EntityId id,
                                 const engine::SubscriptionMatched& status) override;
    void on_data_available(engine::EntityId id) override;

private:
    DataReader& reader_;
};

class SubscriberDispatch final : public engine::Listener {
public:
    explicit SubscriberDispatch(Subscriber& subscriber) : subscriber_(subscriber) {}

    void on_data_on_readers(engine::EntityId id) override;

private:
    Subscriber& subscriber_;
};
/// @}

}  // namespace pexa::dds

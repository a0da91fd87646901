/// @file participant.hpp
/// @brief Domain participants.
#pragma once

#include <map>
#include <mutex>
#include <string>

#include "platform/dds/domain/publisher.hpp"
#include "platform/dds/domain/subscriber.hpp"
#include "platform/dds/interface/scoped_call.hpp"
#include "platform/dds/topics/filtered_topic.hpp"
#include "platform/dds/topics/topic.hpp"

namespace pexa::dds {

class Participant final : public QosEntity<DDS_DomainParticipantQos> {
public:
    using Handle = DDS_DomainParticipant;

    Participant(Factory& factory, DDS_DomainId_t domain);
    ~Participant() override;

    /// Takes over a participant that the application made with the engine, which stays the
    /// application's: closing this object leaves it alone.
    Status wrap(const Operation& operation, engine::EntityId participant);

    Entity* as_entity() { return this; }
    Factory* factory() const { return &factory_; }
    DDS_DomainId_t domain() const { return domain_; }
    Status get_qos(DDS_DomainParticipantQos& qos) const;
    Status assert_liveliness() const;

    /// @name Other participants of the domain
    /// @{
    Status get_discovered_participants(DDS_InstanceHandleSeq& handles) const;
    Status get_discovered_participant_data(const Operation& operation,
                                           DDS_ParticipantBuiltinTopicData& data,
                                           const DDS_InstanceHandle_t& handle) const;
    /// @}

    /// @name Contained entities
    /// Failures are reported. An entity that is not contained, or that is still in use, cannot be
    /// deleted: PRECONDITION_NOT_MET.
    /// @{
    Result<Publisher*> create_publisher(const Operation& operation, const DDS_PublisherQos* qos,
                                        const DDS_PublisherListener* listener, DDS_StatusMask mask);
    Status delete_publisher(const Operation& operation, Publisher& publisher);
    Result<Subscriber*> create_subscriber(const Operation& operation, const DDS_SubscriberQos* qos,
                                          const DDS_SubscriberListener* listener,
                                          DDS_StatusMask mask);
    Status delete_subscriber(const Operation& operation, Subscriber& subscriber);
    Result<Topic*> create_topic(const Operation& operation, const char* name, const char* type_name,
                                const DDS_TopicQos* qos, const DDS_TopicListener* listener,
                                DDS_StatusMask mask);
    Status delete_topic(const Operation& operation, Topic& topic);
    Result<FilteredTopic*> create_filtered_topic(const Operation& operation, const char* name,
                                                 Topic& related, const char* expression,
                                                 const DDS_StringSeq* parameters);
    Status delete_filtered_topic(const Operation& operation, FilteredTopic& topic);
    TopicDescription* find_description(const char* name) const;
    Status delete_contained(const Operation& operation);
    bool is_empty() const;
    /// @}

    /// @name Types
    /// @{
    Status register_type(const Operation& operation, const char* name, const TULVTypePlugin& plugin,
                         const void* properties);
    Status unregister_type(const Operation& operation, const char* name);
    /// @}

    /// @name Default QoS of contained entities, writers and readers among them
    /// Setting NULL takes an earlier setting back.
    /// @{
    const DefaultQos<DDS_PublisherQos>& default_publisher_qos() const {
        return default_publisher_qos_;
    }
    const DefaultQos<DDS_SubscriberQos>& default_subscriber_qos() const {
        return default_subscriber_qos_;
    }
    Status get_default_publisher_qos(const Operation& operation, DDS_PublisherQos& qos) const;
    Status set_default_publisher_qos(const Operation& operation, const DDS_PublisherQos* qos);
    Status get_default_subscriber_qos(const Operation& operation, DDS_SubscriberQos& qos) const;
    Status set_default_subscriber_qos(const Operation& operation, const DDS_SubscriberQos* qos);
    Status get_default_topic_qos(const Operation& operation, DDS_TopicQos& qos,
                                 const char* topic_name) const;
    Status set_default_topic_qos(const Operation& operation, const DDS_TopicQos* qos);
    /// The defaults that a new publisher or subscriber has.
    Status get_default_writer_qos(const Operation& operation, DDS_DataWriterQos& qos,
                                  const char* topic_name) const;
    Status get_default_reader_qos(const Operation& operation, DDS_DataReaderQos& qos,
                                  const char* topic_name) const;
    /// @}

private:
    engine::Created create_in_engine(const Operation& operation) override;
    Status delete_in_engine(engine::EntityId id) override;
    Status enable_contained(const Operation& operation) override;
    void refresh_contained_listeners() override;

    std::shared_ptr<const TypeAdapter> find_type(const char* name) const;
    /// Enters a new topic or filtered topic if its name is free.
    template <typename Description>
    Status enter(const Operation& operation, Children<Description>& children,
                 const std::shared_ptr<Description>& description);

    EngineUse engine_use_;
    Factory& factory_;
    DDS_DomainId_t domain_;
    bool wrapped_ = false;
    DefaultQos<DDS_PublisherQos> default_publisher_qos_;
    DefaultQos<DDS_SubscriberQos> default_subscriber_qos_;
    DefaultQos<DDS_TopicQos> default_topic_qos_;
    DefaultQos<DDS_DataWriterQos> default_writer_qos_;
    DefaultQos<DDS_DataReaderQos> default_reader_qos_;

    mutable std::mutex types_mutex_;
    std::map<std::string, std::shared_ptr<const TypeAdapter>> types_;

    /// Held from the look for a name to the entry under it.
    std::mutex naming_;
    Children<Topic> topics_;
    Children<FilteredTopic> filtered_topics_;
    Children<Publisher> publishers_;
    Children<Subscriber> subscribers_;
};

}  // namespace pexa::dds

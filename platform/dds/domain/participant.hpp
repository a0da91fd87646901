/// @file participant.hpp
/// @brief Domain participants.
#pragma once

#include <map>
#include <mutex>
#include <string>

#include "platform/dds/domain/publisher.hpp"
#include "platform/dds/domain/subscriber.hpp"
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
    [[nodiscard]] DDS_ReturnCode_t wrap(const Operation& operation, engine::EntityId participant);

    [[nodiscard]] Entity* as_entity() { return this; }
    [[nodiscard]] Factory* factory() const { return &factory_; }
    [[nodiscard]] DDS_DomainId_t domain() const { return domain_; }
    [[nodiscard]] DDS_ReturnCode_t get_qos(DDS_DomainParticipantQos& qos) const;
    [[nodiscard]] DDS_ReturnCode_t assert_liveliness() const;

    /// @name What it contains
    /// A creating operation returns NULL after a report. A deleting one gives PRECONDITION_NOT_MET
    /// for what is not contained or still in use.
    /// @{
    [[nodiscard]] Publisher* create_publisher(const Operation& operation,
                                              const DDS_PublisherQos* qos,
                                              const DDS_PublisherListener* listener,
                                              DDS_StatusMask mask);
    [[nodiscard]] DDS_ReturnCode_t delete_publisher(const Operation& operation,
                                                    Publisher& publisher);
    [[nodiscard]] Subscriber* create_subscriber(const Operation& operation,
                                                const DDS_SubscriberQos* qos,
                                                const DDS_SubscriberListener* listener,
                                                DDS_StatusMask mask);
    [[nodiscard]] DDS_ReturnCode_t delete_subscriber(const Operation& operation,
                                                     Subscriber& subscriber);
    [[nodiscard]] Topic* create_topic(const Operation& operation, const char* name,
                                      const char* type_name, const DDS_TopicQos* qos,
                                      const DDS_TopicListener* listener, DDS_StatusMask mask);
    [[nodiscard]] DDS_ReturnCode_t delete_topic(const Operation& operation, Topic& topic);
    [[nodiscard]] FilteredTopic* create_filtered_topic(const Operation& operation, const char* name,
                                                       Topic& related, const char* expression,
                                                       const DDS_StringSeq* parameters);
    [[nodiscard]] DDS_ReturnCode_t delete_filtered_topic(const Operation& operation,
                                                         FilteredTopic& topic);
    [[nodiscard]] TopicDescription* find_description(const char* name) const;
    [[nodiscard]] DDS_ReturnCode_t delete_contained(const Operation& operation);
    [[nodiscard]] bool is_empty() const;
    /// @}

    /// @name Types
    /// @{
    [[nodiscard]] DDS_ReturnCode_t register_type(const Operation& operation, const char* name,
                                                 const TULVTypePlugin& plugin,
                                                 const void* properties);
    [[nodiscard]] DDS_ReturnCode_t unregister_type(const Operation& operation, const char* name);
    /// @}

    /// @name Default QoS of what it contains, and of what that contains
    /// To set a NULL QoS takes back what was set.
    /// @{
    [[nodiscard]] const DefaultQos<DDS_PublisherQos>& default_publisher_qos() const {
        return default_publisher_qos_;
    }
    [[nodiscard]] const DefaultQos<DDS_SubscriberQos>& default_subscriber_qos() const {
        return default_subscriber_qos_;
    }
    [[nodiscard]] const DefaultQos<DDS_TopicQos>& default_topic_qos() const {
        return default_topic_qos_;
    }
    [[nodiscard]] DDS_ReturnCode_t get_default_publisher_qos(const Operation& operation,
                                                             DDS_PublisherQos& qos) const;
    [[nodiscard]] DDS_ReturnCode_t set_default_publisher_qos(const Operation& operation,
                                                             const DDS_PublisherQos* qos);
    [[nodiscard]] DDS_ReturnCode_t get_default_subscriber_qos(const Operation& operation,
                                                              DDS_SubscriberQos& qos) const;
    [[nodiscard]] DDS_ReturnCode_t set_default_subscriber_qos(const Operation& operation,
                                                              const DDS_SubscriberQos* qos);
    [[nodiscard]] DDS_ReturnCode_t get_default_topic_qos(const Operation& operation,
                                                         DDS_TopicQos& qos,
                                                         const char* topic_name) const;
    [[nodiscard]] DDS_ReturnCode_t set_default_topic_qos(const Operation& operation,
                                                         const DDS_TopicQos* qos);
    /// What a publisher or subscriber starts with.
    [[nodiscard]] DDS_ReturnCode_t get_default_writer_qos(const Operation& operation,
                                                          DDS_DataWriterQos& qos,
                                                          const char* topic_name) const;
    [[nodiscard]] DDS_ReturnCode_t get_default_reader_qos(const Operation& operation,
                                                          DDS_DataReaderQos& qos,
                                                          const char* topic_name) const;
    /// @}

private:
    [[nodiscard]] engine::Created create_in_engine(const Operation& operation) override;
    [[nodiscard]] Status delete_in_engine(engine::EntityId id) override;
    [[nodiscard]] DDS_ReturnCode_t enable_contained(const Operation& operation) override;
    void refresh_contained_listeners() override;

    [[nodiscard]] std::shared_ptr<const TypeAdapter> find_type(const char* name) const;
    /// Enters a new topic or filtered topic if its name is free.
    template <typename Description>
    [[nodiscard]] bool enter(const Operation& operation, Children<Description>& children,
                             const std::shared_ptr<Description>& description);

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

/// @file subscriber.hpp
/// @brief Subscribers.
#pragma once

#include "platform/dds/entity/children.hpp"
#include "platform/dds/entity/qos_entity.hpp"

namespace pexa::dds {

/// From a status change of a subscriber in the engine to the application's listener.
class SubscriberDispatch final : public engine::Listener {
public:
    explicit SubscriberDispatch(Subscriber& subscriber) : subscriber_(subscriber) {}

    void on_data_on_readers(engine::EntityId id) override;

private:
    Subscriber& subscriber_;
};

class Subscriber final : public QosEntity<DDS_SubscriberQos> {
public:
    using Handle = DDS_Subscriber;

    explicit Subscriber(Participant& participant);
    ~Subscriber() override;

    Entity* as_entity() { return this; }
    Participant* participant() const { return &participant_; }
    engine::StatusMask statuses() const override { return engine::data_on_readers_status; }

    /// @return a failure after a report
    Result<DataReader*> create_reader(const Operation& operation, TopicDescription& topic,
                                      const DDS_DataReaderQos* qos,
                                      const DDS_DataReaderListener* listener, DDS_StatusMask mask);
    /// @return PRECONDITION_NOT_MET while a loan or a read condition is outstanding
    Status delete_reader(const Operation& operation, DataReader& reader);
    DataReader* find_reader(const char* topic_name) const;
    /// Deletes the readers with their conditions.
    /// @return PRECONDITION_NOT_MET with nothing deleted while a loan is outstanding
    Status delete_contained(const Operation& operation);
    bool is_empty() const { return readers_.empty(); }
    /// @return whether one of the readers has lent samples.
    bool has_loans() const;

    Status get_default_reader_qos(const Operation& operation, DDS_DataReaderQos& qos) const {
        return default_reader_qos_.copy_to(operation, nullptr, qos);
    }
    Status set_default_reader_qos(const Operation& operation, const DDS_DataReaderQos* qos) {
        return default_reader_qos_.assign_checked(operation, qos);
    }

private:
    engine::Created create_in_engine(const Operation& operation) override;
    engine::Listener* dispatch() override { return &dispatch_; }
    Status enable_contained(const Operation& operation) override;
    void refresh_contained_listeners() override;

    Participant& participant_;
    DefaultQos<DDS_DataReaderQos> default_reader_qos_;
    SubscriberDispatch dispatch_{*this};
    Children<DataReader> readers_;
};

}  // namespace pexa::dds

/// @file subscriber.hpp
/// @brief Subscribers.
#pragma once

#include "platform/dds/entity/children.hpp"
#include "platform/dds/entity/qos_entity.hpp"
#include "platform/dds/listeners/listener_dispatch.hpp"

namespace pexa::dds {

class Subscriber final : public QosEntity<DDS_SubscriberQos> {
public:
    using Handle = DDS_Subscriber;

    explicit Subscriber(Participant& participant);
    ~Subscriber() override;

    [[nodiscard]] Entity* as_entity() { return this; }
    [[nodiscard]] Participant* participant() const { return &participant_; }
    [[nodiscard]] engine::StatusMask statuses() const override {
        return engine::data_on_readers_status;
    }

    /// @return NULL after a report
    [[nodiscard]] DataReader* create_reader(const Operation& operation, TopicDescription& topic,
                                            const DDS_DataReaderQos* qos,
                                            const DDS_DataReaderListener* listener,
                                            DDS_StatusMask mask);
    /// @return PRECONDITION_NOT_MET while a loan or a read condition is outstanding
    [[nodiscard]] DDS_ReturnCode_t delete_reader(const Operation& operation, DataReader& reader);
    [[nodiscard]] DataReader* find_reader(const char* topic_name) const;
    /// Deletes the readers with their conditions.
    /// @return PRECONDITION_NOT_MET with nothing deleted while a loan is outstanding
    [[nodiscard]] DDS_ReturnCode_t delete_contained(const Operation& operation);
    [[nodiscard]] bool is_empty() const { return readers_.empty(); }
    /// @return whether one of the readers has lent samples.
    [[nodiscard]] bool has_loans() const;

    [[nodiscard]] const DefaultQos<DDS_DataReaderQos>& default_reader_qos() const {
        return default_reader_qos_;
    }
    [[nodiscard]] DDS_ReturnCode_t get_default_reader_qos(const Operation& operation,
                                                          DDS_DataReaderQos& qos) const {
        return default_reader_qos_.copy_to(operation, nullptr, qos);
    }
    [[nodiscard]] DDS_ReturnCode_t set_default_reader_qos(const Operation& operation,
                                                          const DDS_DataReaderQos* qos) {
        return default_reader_qos_.assign_checked(operation, qos);
    }

private:
    [[nodiscard]] engine::Created create_in_engine(const Operation& operation) override;
    [[nodiscard]] engine::Listener* dispatch() override { return &dispatch_; }
    [[nodiscard]] DDS_ReturnCode_t enable_contained(const Operation& operation) override;
    void refresh_contained_listeners() override;

    Participant& participant_;
    DefaultQos<DDS_DataReaderQos> default_reader_qos_;
    SubscriberDispatch dispatch_{*this};
    Children<DataReader> readers_;
};

}  // namespace pexa::dds

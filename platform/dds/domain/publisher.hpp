/// @file publisher.hpp
/// @brief Publishers.
#pragma once

#include "platform/dds/entity/children.hpp"
#include "platform/dds/entity/qos_entity.hpp"

namespace pexa::dds {

class Publisher final : public QosEntity<DDS_PublisherQos> {
public:
    using Handle = DDS_Publisher;

    explicit Publisher(Participant& participant);
    ~Publisher() override;

    Entity* as_entity() { return this; }
    Participant* participant() const { return &participant_; }

    /// @return a failure after a report
    Result<DataWriter*> create_writer(const Operation& operation, Topic& topic,
                                      const DDS_DataWriterQos* qos,
                                      const DDS_DataWriterListener* listener, DDS_StatusMask mask);
    Status delete_writer(const Operation& operation, DataWriter& writer);
    DataWriter* find_writer(const char* topic_name) const;
    Status delete_contained(const Operation& operation);
    bool is_empty() const { return writers_.empty(); }

    Status get_default_writer_qos(const Operation& operation, DDS_DataWriterQos& qos) const {
        return default_writer_qos_.copy_to(operation, nullptr, qos);
    }
    Status set_default_writer_qos(const Operation& operation, const DDS_DataWriterQos* qos) {
        return default_writer_qos_.assign_checked(operation, qos);
    }

private:
    engine::Created create_in_engine(const Operation& operation) override;
    Status enable_contained(const Operation& operation) override;
    void refresh_contained_listeners() override;

    Participant& participant_;
    DefaultQos<DDS_DataWriterQos> default_writer_qos_;
    Children<DataWriter> writers_;
};

}  // namespace pexa::dds

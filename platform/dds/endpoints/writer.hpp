/// @file writer.hpp
/// @brief Data writers.
#pragma once

#include "platform/dds/domain/publisher.hpp"
#include "platform/dds/endpoints/peer_directory.hpp"
#include "platform/dds/endpoints/typed_endpoint.hpp"
#include "platform/dds/listeners/status_conversion.hpp"
#include "platform/dds/topics/topic.hpp"

namespace pexa::dds {

class DataWriter final : public QosEntity<DDS_DataWriterQos> {
public:
    using Handle = DDS_DataWriter;

    DataWriter(Publisher& publisher, Topic& topic);

    /// Gives a new writer its codec.
    [[nodiscard]] DDS_ReturnCode_t attach_type(const Operation& operation);

    [[nodiscard]] Entity* as_entity() { return this; }
    [[nodiscard]] Topic* topic() const { return &topic_; }
    [[nodiscard]] Publisher* publisher() const { return &publisher_; }
    [[nodiscard]] DDS_Boolean is_of_type(const char* type_name) const;

    /// @name Writing
    /// The parameters may be NULL for the defaults. A NULL sample is allowed where a handle names
    /// the instance to dispose or unregister.
    /// @{
    [[nodiscard]] DDS_ReturnCode_t write(const Operation& operation, const void* sample,
                                         const DDS_WriteParams_t* params);
    [[nodiscard]] DDS_ReturnCode_t dispose(const Operation& operation, const void* sample,
                                           const DDS_WriteParams_t* params);
    [[nodiscard]] DDS_InstanceHandle_t register_instance(const Operation& operation,
                                                         const void* sample,
                                                         const DDS_WriteParams_t* params);
    [[nodiscard]] DDS_ReturnCode_t unregister_instance(const Operation& operation,
                                                       const void* sample,
                                                       const DDS_WriteParams_t* params);
    /// @}
    [[nodiscard]] DDS_ReturnCode_t get_key_value(const Operation& operation, void* sample,
                                                 const DDS_InstanceHandle_t& handle);
    [[nodiscard]] DDS_InstanceHandle_t lookup_instance(const void* sample);

    [[nodiscard]] DDS_ReturnCode_t wait_for_acknowledgments(const Operation& operation,
                                                            const DDS_Duration_t& max_wait) const;
    [[nodiscard]] DDS_ReturnCode_t flush() const;
    [[nodiscard]] DDS_ReturnCode_t assert_liveliness() const;

    [[nodiscard]] engine::StatusMask statuses() const override;
    template <typename Record>
    [[nodiscard]] DDS_ReturnCode_t get_status(Record& record) {
        return read_status(engine_id(), record,
                           [this](engine::LocalHandle peer) { return peer_handle(peer); });
    }
    [[nodiscard]] DDS_ReturnCode_t get_matched_subscriptions(DDS_InstanceHandleSeq& handles);
    [[nodiscard]] DDS_InstanceHandle_t peer_handle(engine::LocalHandle peer);

private:
    [[nodiscard]] engine::Created create_in_engine(const Operation& operation) override;
    [[nodiscard]] engine::Listener* dispatch() override { return &dispatch_; }
    [[nodiscard]] const char* topic_name() const override { return topic_.topic_name(); }
    void closed() override { topic_use_.end(); }

    /// Gives the instance of a sample. @return BAD_PARAMETER when the handle names another one
    [[nodiscard]] DDS_ReturnCode_t find_instance(const Operation& operation, const void* sample,
                                                 const DDS_InstanceHandle_t& handle,
                                                 engine::KeyHash& instance);
    [[nodiscard]] DDS_ReturnCode_t write_key(const Operation& operation, engine::WriteKind kind,
                                             const void* sample, const DDS_WriteParams_t* params);
    [[nodiscard]] DDS_ReturnCode_t write_key_of_handle(const Operation& operation,
                                                       engine::WriteKind kind,
                                                       const DDS_InstanceHandle_t& handle,
                                                       engine::Nanoseconds timestamp);

    Publisher& publisher_;
    Topic& topic_;
    TopicUse topic_use_{topic_};
    TypedEndpoint endpoint_;
    PeerDirectory peers_{PeerKind::subscriptions};
    WriterDispatch dispatch_{*this};
};

}  // namespace pexa::dds

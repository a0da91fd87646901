/// @file writer.hpp
/// @brief Data writers.
#pragma once

#include "platform/dds/endpoints/endpoint.hpp"
#include "platform/dds/endpoints/writer_dispatch.hpp"

namespace pexa::dds {

class DataWriter final : public Endpoint<DDS_DataWriterQos, Topic> {
public:
    using Handle = DDS_DataWriter;

    /// @param parent the publisher as an entity
    /// @param defaults the publisher's, for its writers
    DataWriter(Publisher& publisher, const Entity& parent,
               const DefaultQos<DDS_DataWriterQos>& defaults, Topic& topic);

    Publisher* publisher() const { return &publisher_; }

    /// @name Writing
    /// The parameters may be NULL for the defaults. A NULL sample is allowed where a handle names
    /// the instance to dispose or unregister.
    /// @{
    Status write(const Operation& operation, const void* sample, const DDS_WriteParams_t* params);
    Status dispose(const Operation& operation, const void* sample, const DDS_WriteParams_t* params);
    /// @return the handle of nothing for a keyless type and while the writer is disabled
    Result<DDS_InstanceHandle_t> register_instance(const Operation& operation, const void* sample,
                                                   const DDS_WriteParams_t* params);
    Status unregister_instance(const Operation& operation, const void* sample,
                               const DDS_WriteParams_t* params);
    /// @}

    Status wait_for_acknowledgments(const Operation& operation,
                                    const DDS_Duration_t& max_wait) const;
    Status flush() const;
    Status assert_liveliness() const;

    engine::StatusMask statuses() const override;

private:
    engine::Created create(engine::EntityId topic, const engine::Qos& qos) override;
    engine::Listener* dispatch() override { return &dispatch_; }
    void closed() override { release_topic(); }

    /// The parameters of a write, checked.
    struct Request {
        engine::EntityId writer = engine::no_entity;
        const DDS_InstanceHandle_t* handle = nullptr;
        engine::Nanoseconds timestamp = 0;
    };

    /// @param params NULL for the defaults
    /// @return NOT_ENABLED, or BAD_PARAMETER for a time out of range
    Result<Request> to_request(const Operation& operation, const DDS_WriteParams_t* params) const;
    /// Finds the instance of a sample. @return BAD_PARAMETER when the handle names another instance
    Status find_instance(const Operation& operation, const void* sample,
                         const DDS_InstanceHandle_t& handle, engine::KeyHash& instance);
    Status write_key(const Operation& operation, engine::WriteKind kind, const void* sample,
                     const DDS_WriteParams_t* params);
    Status write_key_of_handle(const Operation& operation, engine::WriteKind kind,
                               const Request& request) const;

    Publisher& publisher_;
    WriterDispatch dispatch_{*this};
};

}  // namespace pexa::dds

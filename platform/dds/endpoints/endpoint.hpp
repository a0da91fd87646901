/// @file endpoint.hpp
/// @brief The operations that readers and writers share.
#pragma once

#include "platform/dds/endpoints/peer_directory.hpp"
#include "platform/dds/endpoints/typed_endpoint.hpp"
#include "platform/dds/entity/qos_entity.hpp"
#include "platform/dds/listeners/status_conversion.hpp"
#include "platform/dds/topics/topic.hpp"

namespace pexa::dds {

/// @tparam Record the QoS record of this kind of endpoint
/// @tparam TopicKind Topic for a writer, TopicDescription for a reader
template <typename Record, typename TopicKind>
class Endpoint : public QosEntity<Record> {
public:
    /// Gives a new endpoint its codec.
    Status attach_type(const Operation& operation) { return typed_.attach(operation); }

    Entity* as_entity() { return this; }
    TopicKind* topic() const { return &topic_; }
    bool is_of_type(const char* type_name) const { return typed_.type().is_of(type_name); }

    Status get_key_value(const Operation& operation, void* sample,
                         const DDS_InstanceHandle_t& handle) {
        return typed_.get_key_value(operation, this->engine_id(), sample, handle);
    }
    DDS_InstanceHandle_t lookup_instance(const void* sample) {
        return typed_.lookup_instance(this->engine_id(), sample);
    }

    template <typename StatusRecord>
    Status get_status(StatusRecord& record) {
        return read_status(this->engine_id(), record,
                           [this](engine::LocalHandle peer) { return peer_handle(peer); });
    }
    Status get_matched_peers(DDS_InstanceHandleSeq& handles) {
        return peers_.store_matched(this->engine_id(), handles);
    }
    DDS_InstanceHandle_t peer_handle(engine::LocalHandle peer) {
        return peers_.handle_of(this->engine_id(), peer);
    }
    /// @return the handle of the writer of a sample.
    DDS_InstanceHandle_t writer_handle(const engine::SampleInfo& info) {
        return info.origin.sequence_number != 0 ? peers_.note(info.publication, info.origin.writer)
                                                : peer_handle(info.publication);
    }

protected:
    /// @param parent the publisher or subscriber
    /// @param defaults the parent's, for its endpoints
    Endpoint(const Entity& parent, const DefaultQos<Record>& defaults, TopicKind& topic,
             TULVEndpointKind kind)
        : QosEntity<Record>(&parent, defaults),
          topic_(topic),
          held_topic_(topic),
          typed_(topic.type(), kind),
          peers_(kind == TULV_ENDPOINT_WRITER ? PeerKind::subscriptions : PeerKind::publications) {}

    TypedEndpoint& typed() { return typed_; }
    void release_topic() { held_topic_.release(); }

private:
    virtual engine::Created create(engine::EntityId topic, const engine::Qos& qos) = 0;

    engine::Created create_in_engine(const Operation& operation) final {
        const Result<engine::EntityId> topic = topic_.engine_topic(operation);
        if (!topic) {
            // Whatever the reason: the topic is not enabled.
            return {Status::precondition_not_met};
        }
        engine::Qos qos;
        if (this->to_engine_qos(qos) != Status::ok) {
            return {Status::out_of_resources};
        }
        return this->allowed(operation, topic_.topic_name(), create(topic.value(), qos));
    }
    const char* topic_name() const final { return topic_.topic_name(); }

    TopicKind& topic_;
    HeldTopic held_topic_;
    TypedEndpoint typed_;
    PeerDirectory peers_;
};

}  // namespace pexa::dds

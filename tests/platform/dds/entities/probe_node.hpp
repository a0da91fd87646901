#pragma once

#include <atomic>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvane/types.h"
#include "pexa/type_plugin.h"
#include "platform/dds/qos/conversion.hpp"
#include "tests/support/node.hpp"
#include "tests/support/text.hpp"

using orvane::test::await_reader;
using orvane::test::patience;
using orvane::test::topic_of_this_test;
using pexa::dds::OwnedQos;

inline constexpr DDS_ReturnCode_t ok = DDS_RETCODE_OK;
inline constexpr DDS_ReturnCode_t refused = DDS_RETCODE_PRECONDITION_NOT_MET;
inline constexpr DDS_ReturnCode_t bad_parameter = DDS_RETCODE_BAD_PARAMETER;
inline constexpr DDS_ReturnCode_t not_enabled = DDS_RETCODE_NOT_ENABLED;
inline constexpr DDS_ReturnCode_t no_data = DDS_RETCODE_NO_DATA;

/// A sample of a keyed type: the number is the key.
class Probe : public QEL_KX_ADMIN_CommandResponse {
public:
    explicit Probe(DDS_Long id = 0, DDS_Long value = 0, const std::string& text = "");
    Probe(const Probe& other) : Probe() { *this = other; }
    Probe& operator=(const Probe& other);
    ~Probe() { QEL_KX_ADMIN_CommandResponse_finalize(this); }

    DDS_Long id() const { return hostAndAppId.rtps_host_id; }
    DDS_Long value() const { return invocation; }
};
static_assert(sizeof(Probe) == sizeof(QEL_KX_ADMIN_CommandResponse), "a sample of that type");

/// The type's plugin, with the hooks below.
TULVTypePlugin probe_plugin();
/// The same members without a key.
TULVTypePlugin keyless_probe_plugin();

/// A payload with this value is refused by decoding.
inline std::atomic<DDS_Long> undecodable_value = -1;
/// What is sent in place of the encoding of a sample or key.
inline std::optional<orvane::test::Bytes> sent_instead;
/// Whether attachments of endpoints are refused.
inline std::atomic<bool> refusing_endpoints = false;
/// Endpoint data that plugins made and did not yet get back.
inline std::atomic<int> attached_endpoints = 0;

/// What to read: anything, all of it, unless the arguments say otherwise.
constexpr DDS_ReadSelectorI selector(DDS_Boolean take, DDS_Long max_samples = DDS_LENGTH_UNLIMITED,
                                     DDS_SampleStateMask states = DDS_ANY_SAMPLE_STATE) {
    return {states, DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE, nullptr, nullptr, 0, max_samples,
            take};
}
inline constexpr DDS_ReadSelectorI take_anything = selector(1);
inline constexpr DDS_ReadSelectorI read_anything = selector(0);

/// A node with the Probe type, registered as "Probe" and as the keyless "Keyless", and a topic.
/// What it makes has the default QoS and is NULL if it cannot be made.
class ProbeNode : public orvane::test::Node {
public:
    explicit ProbeNode(const std::string& topic_name = topic_of_this_test());

    DDS_DataWriter* writer(const orvane::test::TweakWriterQos& tweak = nullptr) const {
        return writer_of(topic, tweak);
    }
    DDS_DataReader* reader(const orvane::test::TweakReaderQos& tweak = nullptr) const {
        return reader_of(description(), tweak);
    }
    DDS_TopicDescription* description() const { return DDS_Topic_as_topicdescription(topic); }

    DDS_Topic* make_topic(const std::string& name, const char* type = "Probe") const {
        return DDS_DomainParticipant_create_topic(participant(), name.c_str(), type, nullptr,
                                                  nullptr, 0);
    }
    DDS_Publisher* make_publisher() const {
        return DDS_DomainParticipant_create_publisher(participant(), nullptr, nullptr, 0);
    }
    DDS_Subscriber* make_subscriber() const {
        return DDS_DomainParticipant_create_subscriber(participant(), nullptr, nullptr, 0);
    }
    DDS_DataWriter* default_writer(DDS_Publisher* of = nullptr, DDS_Topic* on = nullptr) const {
        return DDS_Publisher_create_datawriter(of != nullptr ? of : publisher(),
                                               on != nullptr ? on : topic, nullptr, nullptr, 0);
    }
    DDS_DataReader* default_reader(DDS_Subscriber* of = nullptr) const {
        return DDS_Subscriber_create_datareader(of != nullptr ? of : subscriber(), description(),
                                                nullptr, nullptr, 0);
    }

    /// Deletes by this node's entities.
    DDS_ReturnCode_t remove(DDS_DataWriter* writer) const {
        return DDS_Publisher_delete_datawriter(publisher(), writer);
    }
    DDS_ReturnCode_t remove(DDS_DataReader* reader) const {
        return DDS_Subscriber_delete_datareader(subscriber(), reader);
    }
    DDS_ReturnCode_t remove(DDS_Topic* other) const {
        return DDS_DomainParticipant_delete_topic(participant(), other);
    }
    DDS_ReturnCode_t remove(DDS_ContentFilteredTopic* filtered) const {
        return DDS_DomainParticipant_delete_contentfilteredtopic(participant(), filtered);
    }
    DDS_ReturnCode_t remove(DDS_Publisher* other) const {
        return DDS_DomainParticipant_delete_publisher(participant(), other);
    }
    DDS_ReturnCode_t remove(DDS_Subscriber* other) const {
        return DDS_DomainParticipant_delete_subscriber(participant(), other);
    }

    DDS_Topic* topic;
};

/// A sample as it was read.
struct Received {
    Probe probe;
    DDS_SampleInfo info;
};

/// A typed data sequence with its infos, as the typed operations use the untyped ones.
class ProbeSeq {
public:
    /// @param maximum 0 for a sequence that gets loans
    explicit ProbeSeq(DDS_Long maximum = 0);
    ProbeSeq(const ProbeSeq&) = delete;
    ProbeSeq& operator=(const ProbeSeq&) = delete;
    ~ProbeSeq() { DDS_SampleInfoSeq_finalize(&infos); }

    DDS_ReturnCode_t receive(DDS_DataReader* reader,
                             const DDS_ReadSelectorI& selector = take_anything);
    DDS_ReturnCode_t return_loan(DDS_DataReader* reader);
    std::vector<Received> content() const;

    DDS_UntypedSampleSeqI data{};
    DDS_SampleInfoSeq infos{};

private:
    std::vector<Probe> buffer_;
};

/// Reads or takes what there is, on loan.
std::vector<Received> receive(DDS_DataReader* reader,
                              const DDS_ReadSelectorI& selector = take_anything);
/// Takes until that many samples have come.
std::vector<Received> await_samples(DDS_DataReader* reader, std::size_t count);
/// @return "id:value id:value …" of samples, "id-" of those without data
std::string summary(const std::vector<Received>& samples);

inline DDS_ReturnCode_t write(DDS_DataWriter* writer, DDS_Long id, DDS_Long value) {
    const Probe probe(id, value);
    return DDS_DataWriter_write_untypedI(writer, &probe, nullptr);
}

/// The handle of a probe's instance.
DDS_InstanceHandle_t handle_of(DDS_Long id);
inline bool equal(const DDS_InstanceHandle_t& left, const DDS_InstanceHandle_t& right) {
    return DDS_InstanceHandle_equals(&left, &right) != 0;
}

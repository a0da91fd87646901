#pragma once

#include <atomic>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvane/types.h"
#include "pexa/string.h"
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
    explicit Probe(DDS_Long id = 0, DDS_Long value = 0, const std::string& text = "")
        : QEL_KX_ADMIN_CommandResponse{} {
        QEL_KX_ADMIN_CommandResponse_initialize(this);
        hostAndAppId.rtps_host_id = id;
        invocation = value;
        // A string of the type has room for its bound, and a copy relies on that. Texts beyond the
        // bound are for tests of their refusal.
        if (DDS_String_copyBounded(message, text.c_str(), ORVANE_RESPONSE_MESSAGE_BOUND + 1) == 0) {
            DDS_String_replace(&message, text.c_str());
        }
    }
    Probe(const Probe& other) : Probe() { *this = other; }
    Probe& operator=(const Probe& other) {
        QEL_KX_ADMIN_CommandResponse_copy(this, &other);
        return *this;
    }
    ~Probe() { QEL_KX_ADMIN_CommandResponse_finalize(this); }

    DDS_Long id() const { return hostAndAppId.rtps_host_id; }
    DDS_Long value() const { return invocation; }
};
static_assert(sizeof(Probe) == sizeof(QEL_KX_ADMIN_CommandResponse), "a sample of that type");

/// A payload with this value is refused by decoding.
inline std::atomic<DDS_Long> undecodable_value = -1;
/// What is sent in place of the encoding of a sample or key.
inline std::optional<orvane::test::Bytes> sent_instead;
/// Whether attachments of endpoints are refused.
inline std::atomic<bool> refusing_endpoints = false;
/// Endpoint data that plugins made and did not yet get back.
inline std::atomic<int> attached_endpoints = 0;

/// The operations of the type's plugin, with the hooks above.
namespace probe {

inline TULVEndpointData attach(TULVParticipantData participant, const TULVEndpointInfo* info) {
    if (refusing_endpoints) {
        return nullptr;
    }
    ++attached_endpoints;
    return QEL_KX_ADMIN_CommandResponsePlugin_on_endpoint_attached(participant, info);
}

inline void detach(TULVEndpointData data) {
    --attached_endpoints;
    QEL_KX_ADMIN_CommandResponsePlugin_on_endpoint_detached(data);
}

inline DDS_Boolean deserialize(TULVEndpointData endpoint, void** sample, DDS_Boolean* drop,
                               QELCdrStream* stream, DDS_Boolean header, DDS_Boolean body,
                               void* qos) {
    return QEL_KX_ADMIN_CommandResponsePlugin_deserialize(endpoint, sample, drop, stream, header,
                                                          body, qos) != 0 &&
           static_cast<const Probe*>(*sample)->value() != undecodable_value;
}

inline DDS_UnsignedLong size_of(TULVEndpointData endpoint, DDS_Boolean header, DDS_UnsignedShort id,
                                DDS_UnsignedLong alignment, const void* sample) {
    return sent_instead ? static_cast<DDS_UnsignedLong>(sent_instead->size())
                        : QEL_KX_ADMIN_CommandResponsePlugin_get_serialized_sample_size(
                              endpoint, header, id, alignment, sample);
}

template <auto& plugins_own>
DDS_Boolean serialize(TULVEndpointData endpoint, const void* sample, QELCdrStream* stream,
                      DDS_Boolean header, DDS_UnsignedShort id, DDS_Boolean body, void* qos) {
    if (!sent_instead) {
        return plugins_own(endpoint, sample, stream, header, id, body, qos);
    }
    std::memcpy(stream->buffer, sent_instead->data(), sent_instead->size());
    stream->position = sent_instead->size();
    return DDS_BOOLEAN_TRUE;
}

}  // namespace probe

inline TULVTypePlugin probe_plugin() {
    const std::unique_ptr<TULVTypePlugin, void (*)(TULVTypePlugin*)> made(
        QEL_KX_ADMIN_CommandResponsePlugin_new(), QEL_KX_ADMIN_CommandResponsePlugin_delete);
    TULVTypePlugin plugin = *made;
    plugin.on_endpoint_attached = probe::attach;
    plugin.on_endpoint_detached = probe::detach;
    plugin.deserialize = probe::deserialize;
    plugin.get_serialized_sample_size = probe::size_of;
    plugin.serialize = probe::serialize<QEL_KX_ADMIN_CommandResponsePlugin_serialize>;
    plugin.serialize_key = probe::serialize<QEL_KX_ADMIN_CommandResponsePlugin_serialize_key>;
    return plugin;
}
/// The same members without a key.
inline TULVTypePlugin keyless_probe_plugin() {
    TULVTypePlugin plugin = probe_plugin();
    plugin.get_key_kind = [] { return TULV_NO_KEY; };
    plugin.typeName = "test::Keyless";
    return plugin;
}

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
    explicit ProbeNode(const std::string& topic_name = topic_of_this_test()) {
        const TULVTypePlugin keyed = probe_plugin();
        const TULVTypePlugin keyless = keyless_probe_plugin();
        EXPECT_EQ(DDS_DomainParticipant_register_type(participant(), "Probe", &keyed, nullptr), ok);
        EXPECT_EQ(DDS_DomainParticipant_register_type(participant(), "Keyless", &keyless, nullptr),
                  ok);
        topic = make_topic(topic_name);
        EXPECT_NE(topic, nullptr);
    }

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
    explicit ProbeSeq(DDS_Long maximum = 0) : buffer_(static_cast<std::size_t>(maximum)) {
        data.maximum = maximum;
        data.owned = 1;
        data.contiguousBuffer = maximum > 0 ? buffer_.data() : nullptr;
        data.elementSize = sizeof(Probe);
        DDS_SampleInfoSeq_initialize(&infos);
        DDS_SampleInfoSeq_set_maximum(&infos, maximum);
    }
    ProbeSeq(const ProbeSeq&) = delete;
    ProbeSeq& operator=(const ProbeSeq&) = delete;
    ~ProbeSeq() { DDS_SampleInfoSeq_finalize(&infos); }

    DDS_ReturnCode_t receive(DDS_DataReader* reader,
                             const DDS_ReadSelectorI& selector = take_anything) {
        const DDS_ReturnCode_t result =
            DDS_DataReader_read_or_take_untypedI(reader, &selector, &data, &infos);
        if (result == ok) {
            data.length = data.count;
            data.maximum = data.isLoan != 0 ? data.count : data.maximum;
            data.owned = data.isLoan != 0 ? 0 : 1;
        } else if (result == no_data) {
            data.length = 0;
        }
        return result;
    }
    DDS_ReturnCode_t return_loan(DDS_DataReader* reader) {
        const DDS_ReturnCode_t result =
            DDS_DataReader_return_loan_untypedI(reader, data.loanedSamples, data.length, &infos);
        if (result == ok) {
            data = {};
            data.owned = 1;
            data.elementSize = sizeof(Probe);
        }
        return result;
    }
    std::vector<Received> content() const {
        std::vector<Received> samples;
        for (DDS_Long i = 0; i < data.length; ++i) {
            const auto index = static_cast<std::size_t>(i);
            const Probe& probe =
                data.owned == 0 ? *static_cast<Probe*>(data.loanedSamples[index]) : buffer_[index];
            samples.push_back({probe, infos.contiguousBuffer[index]});
        }
        return samples;
    }

    DDS_UntypedSampleSeqI data{};
    DDS_SampleInfoSeq infos{};

private:
    std::vector<Probe> buffer_;
};

/// Reads or takes what there is, on loan.
inline std::vector<Received> receive(DDS_DataReader* reader,
                                     const DDS_ReadSelectorI& selector = take_anything) {
    ProbeSeq sequence;
    const DDS_ReturnCode_t result = sequence.receive(reader, selector);
    if (result != ok) {
        EXPECT_EQ(result, no_data);
        return {};
    }
    std::vector<Received> samples = sequence.content();
    EXPECT_EQ(sequence.return_loan(reader), ok);
    return samples;
}
/// Takes until that many samples have come.
inline std::vector<Received> await_samples(DDS_DataReader* reader, std::size_t count) {
    std::vector<Received> samples;
    while (samples.size() < count && orvane::test::await_data(reader)) {
        for (const Received& one : receive(reader)) {
            samples.push_back(one);
        }
    }
    return samples;
}
/// @return "id:value id:value …" of samples, "id-" of those without data
inline std::string summary(const std::vector<Received>& samples) {
    std::string text;
    for (const auto& [probe, info] : samples) {
        text += (text.empty() ? "" : " ") + std::to_string(probe.id()) +
                (info.valid_data != 0 ? ":" + std::to_string(probe.value()) : "-");
    }
    return text;
}

inline DDS_ReturnCode_t write(DDS_DataWriter* writer, DDS_Long id, DDS_Long value) {
    const Probe probe(id, value);
    return DDS_DataWriter_write_untypedI(writer, &probe, nullptr);
}

/// The handle of a probe's instance.
inline DDS_InstanceHandle_t handle_of(DDS_Long id) {
    const Probe probe(id);
    DDS_InstanceHandle_t handle = {{}, DDS_BOOLEAN_TRUE};
    QEL_KX_ADMIN_CommandResponsePlugin_instance_to_keyhash(nullptr, &handle.keyHash, &probe);
    return handle;
}
inline bool equal(const DDS_InstanceHandle_t& left, const DDS_InstanceHandle_t& right) {
    return DDS_InstanceHandle_equals(&left, &right) != 0;
}

#include "tests/platform/dds/entities/probe_node.hpp"

#include <cstring>
#include <memory>

#include "pexa/string.h"

namespace {

TULVEndpointData attach(TULVParticipantData participant, const TULVEndpointInfo* info) {
    if (refusing_endpoints) {
        return nullptr;
    }
    ++attached_endpoints;
    return QEL_KX_ADMIN_CommandResponsePlugin_on_endpoint_attached(participant, info);
}

void detach(TULVEndpointData data) {
    --attached_endpoints;
    QEL_KX_ADMIN_CommandResponsePlugin_on_endpoint_detached(data);
}

DDS_Boolean deserialize(TULVEndpointData endpoint, void** sample, DDS_Boolean* drop,
                        QELCdrStream* stream, DDS_Boolean header, DDS_Boolean body, void* qos) {
    return QEL_KX_ADMIN_CommandResponsePlugin_deserialize(endpoint, sample, drop, stream, header,
                                                          body, qos) != 0 &&
           static_cast<const Probe*>(*sample)->value() != undecodable_value;
}

DDS_UnsignedLong size_of(TULVEndpointData endpoint, DDS_Boolean header, DDS_UnsignedShort id,
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

}  // namespace

Probe::Probe(DDS_Long id, DDS_Long value, const std::string& text)
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

Probe& Probe::operator=(const Probe& other) {
    QEL_KX_ADMIN_CommandResponse_copy(this, &other);
    return *this;
}

TULVTypePlugin probe_plugin() {
    const std::unique_ptr<TULVTypePlugin, void (*)(TULVTypePlugin*)> made(
        QEL_KX_ADMIN_CommandResponsePlugin_new(), QEL_KX_ADMIN_CommandResponsePlugin_delete);
    TULVTypePlugin plugin = *made;
    plugin.on_endpoint_attached = attach;
    plugin.on_endpoint_detached = detach;
    plugin.deserialize = deserialize;
    plugin.get_serialized_sample_size = size_of;
    plugin.serialize = serialize<QEL_KX_ADMIN_CommandResponsePlugin_serialize>;
    plugin.serialize_key = serialize<QEL_KX_ADMIN_CommandResponsePlugin_serialize_key>;
    return plugin;
}

TULVTypePlugin keyless_probe_plugin() {
    TULVTypePlugin plugin = probe_plugin();
    plugin.get_key_kind = [] { return TULV_NO_KEY; };
    plugin.typeName = "test::Keyless";
    return plugin;
}

ProbeNode::ProbeNode(const std::string& topic_name) {
    const TULVTypePlugin keyed = probe_plugin();
    const TULVTypePlugin keyless = keyless_probe_plugin();
    EXPECT_EQ(DDS_DomainParticipant_register_type(participant(), "Probe", &keyed, nullptr), ok);
    EXPECT_EQ(DDS_DomainParticipant_register_type(participant(), "Keyless", &keyless, nullptr), ok);
    topic = make_topic(topic_name);
    EXPECT_NE(topic, nullptr);
}

ProbeSeq::ProbeSeq(DDS_Long maximum) : buffer_(static_cast<std::size_t>(maximum)) {
    data.maximum = maximum;
    data.owned = 1;
    data.contiguousBuffer = maximum > 0 ? buffer_.data() : nullptr;
    data.elementSize = sizeof(Probe);
    DDS_SampleInfoSeq_initialize(&infos);
    DDS_SampleInfoSeq_set_maximum(&infos, maximum);
}

DDS_ReturnCode_t ProbeSeq::receive(DDS_DataReader* reader, const DDS_ReadSelectorI& selector) {
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

DDS_ReturnCode_t ProbeSeq::return_loan(DDS_DataReader* reader) {
    const DDS_ReturnCode_t result =
        DDS_DataReader_return_loan_untypedI(reader, data.loanedSamples, data.length, &infos);
    if (result == ok) {
        data = {};
        data.owned = 1;
        data.elementSize = sizeof(Probe);
    }
    return result;
}

std::vector<Received> ProbeSeq::content() const {
    std::vector<Received> samples;
    for (DDS_Long i = 0; i < data.length; ++i) {
        const auto index = static_cast<std::size_t>(i);
        const Probe& probe =
            data.owned == 0 ? *static_cast<Probe*>(data.loanedSamples[index]) : buffer_[index];
        samples.push_back({probe, infos.contiguousBuffer[index]});
    }
    return samples;
}

std::vector<Received> receive(DDS_DataReader* reader, const DDS_ReadSelectorI& selector) {
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

std::vector<Received> await_samples(DDS_DataReader* reader, std::size_t count) {
    std::vector<Received> samples;
    while (samples.size() < count && orvane::test::await_data(reader)) {
        for (const Received& one : receive(reader)) {
            samples.push_back(one);
        }
    }
    return samples;
}

std::string summary(const std::vector<Received>& samples) {
    std::string text;
    for (const auto& [probe, info] : samples) {
        text += (text.empty() ? "" : " ") + std::to_string(probe.id()) +
                (info.valid_data != 0 ? ":" + std::to_string(probe.value()) : "-");
    }
    return text;
}

DDS_InstanceHandle_t handle_of(DDS_Long id) {
    const Probe probe(id);
    DDS_InstanceHandle_t handle = {{}, DDS_BOOLEAN_TRUE};
    QEL_KX_ADMIN_CommandResponsePlugin_instance_to_keyhash(nullptr, &handle.keyHash, &probe);
    return handle;
}

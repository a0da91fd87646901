#include "tests/platform/dds/entities/probe_node.hpp"

#include "platform/dds/interface/value_conversion.hpp"

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

DDS_ReturnCode_t write(DDS_DataWriter* writer, const Probe& probe) {
    return DDS_DataWriter_write_untypedI(writer, &probe, nullptr);
}

DDS_InstanceHandle_t handle_of(DDS_Long id) {
    return pexa::dds::to_handle(hash_of_probe(id));
}

#pragma once

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "pexa/publication.h"
#include "pexa/subscription.h"
#include "platform/dds/qos/conversion.hpp"
#include "tests/platform/dds/entities/probe_type.hpp"

inline constexpr DDS_Duration_t patience = {20, 0};
inline constexpr DDS_ReadSelectorI take_anything = {DDS_ANY_SAMPLE_STATE,
                                                    DDS_ANY_VIEW_STATE,
                                                    DDS_ANY_INSTANCE_STATE,
                                                    nullptr,
                                                    nullptr,
                                                    0,
                                                    DDS_LENGTH_UNLIMITED,
                                                    1};

/// @return a topic name that no other test of the run uses
std::string topic_of_this_test();

using WriterTweak = std::function<void(DDS_DataWriterQos&)>;
using ReaderTweak = std::function<void(DDS_DataReaderQos&)>;

/// A participant with the types, a keyed topic, a publisher and a subscriber. Writers and readers
/// are reliable, transient local and keep everything unless a tweak says otherwise.
class ProbeNode {
public:
    explicit ProbeNode(const std::string& topic_name = topic_of_this_test());
    ProbeNode(const ProbeNode&) = delete;
    ProbeNode& operator=(const ProbeNode&) = delete;
    ~ProbeNode();

    [[nodiscard]] DDS_DataWriter* writer(const WriterTweak& tweak = nullptr,
                                         DDS_Topic* topic = nullptr) const;
    [[nodiscard]] DDS_DataReader* reader(const ReaderTweak& tweak = nullptr,
                                         DDS_TopicDescription* topic = nullptr) const;
    /// A topic of the keyless type.
    [[nodiscard]] DDS_Topic* keyless_topic() const;

    DDS_DomainParticipant* participant;
    DDS_Topic* topic;
    DDS_Publisher* publisher;
    DDS_Subscriber* subscriber;
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
    ~ProbeSeq();

    DDS_ReturnCode_t receive(DDS_DataReader* reader, const DDS_ReadSelectorI& selector);
    DDS_ReturnCode_t return_loan(DDS_DataReader* reader);
    [[nodiscard]] std::vector<Received> content() const;

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

/// Waits until a condition is true.
DDS_ReturnCode_t await(DDS_Condition* condition, const DDS_Duration_t& timeout = patience);
/// Waits until an endpoint has matched that many others.
bool await_reader(DDS_DataWriter* writer, DDS_Long count = 1);
bool await_writer(DDS_DataReader* reader, DDS_Long count = 1);

DDS_ReturnCode_t write(DDS_DataWriter* writer, const Probe& probe);

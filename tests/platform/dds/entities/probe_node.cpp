#include "tests/platform/dds/entities/probe_node.hpp"

#include <algorithm>

using pexa::dds::OwnedQos;

namespace {

DDS_DomainParticipantFactory* factory() {
    return DDS_DomainParticipantFactory_get_instance();
}

template <typename Qos>
void keep_everything(Qos& qos) {
    qos.reliability = {DDS_RELIABLE_RELIABILITY_QOS, {1, 0}};
    qos.durability.kind = DDS_TRANSIENT_LOCAL_DURABILITY_QOS;
    qos.history.kind = DDS_KEEP_ALL_HISTORY_QOS;
}

/// Waits until a status of an entity says what is wanted, looking whenever it changes.
bool await_status(DDS_Entity* entity, DDS_StatusMask bit, const std::function<bool()>& reached) {
    DDS_StatusCondition* condition = DDS_Entity_get_statuscondition(entity);
    DDS_StatusCondition_set_enabled_statuses(condition, bit);
    while (!reached()) {
        if (await(DDS_StatusCondition_as_condition(condition)) != DDS_RETCODE_OK) {
            return false;
        }
    }
    return true;
}

}  // namespace

std::string topic_of_this_test() {
    const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
    std::string name = std::string(test->test_suite_name()) + "_" + test->name();
    std::replace(name.begin(), name.end(), '/', '_');
    return name;
}

ProbeNode::ProbeNode(const std::string& topic_name)
    : participant(DDS_DomainParticipantFactory_create_participant(
          factory(), ORVANE_TEST_DOMAIN, DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE)) {
    const TULVTypePlugin keyed = probe_plugin();
    const TULVTypePlugin keyless = keyless_probe_plugin();
    EXPECT_EQ(DDS_DomainParticipant_register_type(participant, "Probe", &keyed, nullptr),
              DDS_RETCODE_OK);
    EXPECT_EQ(DDS_DomainParticipant_register_type(participant, "Keyless", &keyless, nullptr),
              DDS_RETCODE_OK);
    topic = DDS_DomainParticipant_create_topic(participant, topic_name.c_str(), "Probe",
                                               DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
    publisher = DDS_DomainParticipant_create_publisher(participant, DDS_QOS_DEFAULT, nullptr,
                                                       DDS_STATUS_MASK_NONE);
    subscriber = DDS_DomainParticipant_create_subscriber(participant, DDS_QOS_DEFAULT, nullptr,
                                                         DDS_STATUS_MASK_NONE);
    EXPECT_TRUE(topic != nullptr && publisher != nullptr && subscriber != nullptr);
}

ProbeNode::~ProbeNode() {
    EXPECT_EQ(DDS_DomainParticipant_delete_contained_entities(participant), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_DomainParticipantFactory_delete_participant(factory(), participant),
              DDS_RETCODE_OK);
}

DDS_DataWriter* ProbeNode::writer(const WriterTweak& tweak, DDS_Topic* other) const {
    OwnedQos<DDS_DataWriterQos> qos;
    keep_everything(qos.get());
    if (tweak) {
        tweak(qos.get());
    }
    DDS_DataWriter* writer = DDS_Publisher_create_datawriter(
        publisher, other != nullptr ? other : topic, &qos.get(), nullptr, DDS_STATUS_MASK_NONE);
    EXPECT_NE(writer, nullptr);
    return writer;
}

DDS_DataReader* ProbeNode::reader(const ReaderTweak& tweak, DDS_TopicDescription* other) const {
    OwnedQos<DDS_DataReaderQos> qos;
    keep_everything(qos.get());
    if (tweak) {
        tweak(qos.get());
    }
    DDS_DataReader* reader = DDS_Subscriber_create_datareader(
        subscriber, other != nullptr ? other : DDS_Topic_as_topicdescription(topic), &qos.get(),
        nullptr, DDS_STATUS_MASK_NONE);
    EXPECT_NE(reader, nullptr);
    return reader;
}

DDS_Topic* ProbeNode::keyless_topic() const {
    const std::string name = topic_of_this_test() + "_keyless";
    return DDS_DomainParticipant_create_topic(participant, name.c_str(), "Keyless", DDS_QOS_DEFAULT,
                                              nullptr, DDS_STATUS_MASK_NONE);
}

ProbeSeq::ProbeSeq(DDS_Long maximum) : buffer_(static_cast<std::size_t>(maximum)) {
    data.maximum = maximum;
    data.owned = 1;
    data.contiguousBuffer = maximum > 0 ? buffer_.data() : nullptr;
    data.elementSize = sizeof(Probe);
    DDS_SampleInfoSeq_initialize(&infos);
    DDS_SampleInfoSeq_set_maximum(&infos, maximum);
}

ProbeSeq::~ProbeSeq() {
    DDS_SampleInfoSeq_finalize(&infos);
}

DDS_ReturnCode_t ProbeSeq::receive(DDS_DataReader* reader, const DDS_ReadSelectorI& selector) {
    const DDS_ReturnCode_t result =
        DDS_DataReader_read_or_take_untypedI(reader, &selector, &data, &infos);
    if (result == DDS_RETCODE_OK) {
        data.length = data.count;
        data.maximum = data.isLoan != 0 ? data.count : data.maximum;
        data.owned = data.isLoan != 0 ? 0 : 1;
    } else if (result == DDS_RETCODE_NO_DATA) {
        data.length = 0;
    }
    return result;
}

DDS_ReturnCode_t ProbeSeq::return_loan(DDS_DataReader* reader) {
    const DDS_ReturnCode_t result =
        DDS_DataReader_return_loan_untypedI(reader, data.loanedSamples, data.length, &infos);
    if (result == DDS_RETCODE_OK) {
        data.length = 0;
        data.maximum = 0;
        data.owned = 1;
        data.loanedSamples = nullptr;
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
    if (result != DDS_RETCODE_OK) {
        EXPECT_EQ(result, DDS_RETCODE_NO_DATA);
        return {};
    }
    std::vector<Received> samples = sequence.content();
    EXPECT_EQ(sequence.return_loan(reader), DDS_RETCODE_OK);
    return samples;
}

std::vector<Received> await_samples(DDS_DataReader* reader, std::size_t count) {
    DDS_ReadCondition* has_data = DDS_DataReader_create_readcondition(
        reader, DDS_ANY_SAMPLE_STATE, DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE);
    std::vector<Received> samples;
    while (samples.size() < count &&
           await(DDS_ReadCondition_as_condition(has_data)) == DDS_RETCODE_OK) {
        for (const Received& one : receive(reader)) {
            samples.push_back(one);
        }
    }
    EXPECT_EQ(DDS_DataReader_delete_readcondition(reader, has_data), DDS_RETCODE_OK);
    return samples;
}

std::string summary(const std::vector<Received>& samples) {
    std::string text;
    for (const Received& sample : samples) {
        text += (text.empty() ? "" : " ") + std::to_string(sample.probe.id) +
                (sample.info.valid_data != 0 ? ":" + std::to_string(sample.probe.value) : "-");
    }
    return text;
}

DDS_ReturnCode_t await(DDS_Condition* condition, const DDS_Duration_t& timeout) {
    DDS_WaitSet* wait_set = DDS_WaitSet_new();
    EXPECT_EQ(DDS_WaitSet_attach_condition(wait_set, condition), DDS_RETCODE_OK);
    DDS_ConditionSeq active{};
    const DDS_ReturnCode_t result = DDS_WaitSet_wait(wait_set, &active, &timeout);
    DDS_ConditionSeq_finalize(&active);
    EXPECT_EQ(DDS_WaitSet_delete(wait_set), DDS_RETCODE_OK);
    return result;
}

bool await_reader(DDS_DataWriter* writer, DDS_Long count) {
    DDS_PublicationMatchedStatus status{};
    return await_status(DDS_DataWriter_as_entity(writer), DDS_PUBLICATION_MATCHED_STATUS, [&] {
        return DDS_DataWriter_get_publication_matched_status(writer, &status) == DDS_RETCODE_OK &&
               status.current_count >= count;
    });
}

bool await_writer(DDS_DataReader* reader, DDS_Long count) {
    DDS_SubscriptionMatchedStatus status{};
    return await_status(DDS_DataReader_as_entity(reader), DDS_SUBSCRIPTION_MATCHED_STATUS, [&] {
        return DDS_DataReader_get_subscription_matched_status(reader, &status) == DDS_RETCODE_OK &&
               status.current_count >= count;
    });
}

DDS_ReturnCode_t write(DDS_DataWriter* writer, const Probe& probe) {
    return DDS_DataWriter_write_untypedI(writer, &probe, nullptr);
}

#include <functional>
#include <set>

#include <gtest/gtest.h>

#include "platform/dds/interface/string_list.hpp"
#include "tests/platform/dds/entities/probe_node.hpp"

namespace {

/// A reader that holds five samples of instance 1, with the values 1 to 5.
class Reading : public testing::Test {
protected:
    Reading() {
        for (const DDS_Long value : {1, 2, 3, 4, 5}) {
            EXPECT_EQ(write(writer_, 1, value), ok);
        }
    }

    ProbeNode node_;
    DDS_DataWriter* writer_ = node_.writer();
    DDS_DataReader* reader_ = node_.reader();
};

TEST_F(Reading, SequencesThatCannotTakeTheResultAreRefusedAndNothingIsTaken) {
    const struct {
        const char* what;
        DDS_Long maximum;
        DDS_Long max_samples;
        DDS_ReturnCode_t expected;
        std::function<void(ProbeSeq&)> spoil = nullptr;
    } cases[] = {
        {"more samples than room", 2, 3, refused},
        {"no samples", 0, 0, bad_parameter},
        {"a negative number of samples", 0, -2, bad_parameter},
        {"different maximum", 2, -1, refused,
         [](ProbeSeq& sequence) { DDS_SampleInfoSeq_set_maximum(&sequence.infos, 3); }},
        {"different length", 2, -1, refused,
         [](ProbeSeq& sequence) { DDS_SampleInfoSeq_set_length(&sequence.infos, 1); }},
        {"different ownership", 2, -1, refused,
         [](ProbeSeq& sequence) { sequence.data.owned = 0; }},
        {"no memory behind a maximum", 2, -1, bad_parameter,
         [](ProbeSeq& sequence) { sequence.data.contiguousBuffer = nullptr; }},
    };
    for (const auto& one : cases) {
        ProbeSeq sequence(one.maximum);
        if (one.spoil) {
            one.spoil(sequence);
        }
        EXPECT_EQ(sequence.receive(reader_, selector(1, one.max_samples)), one.expected)
            << one.what;
    }
    EXPECT_EQ(summary(receive(reader_)), "1:1 1:2 1:3 1:4 1:5");
}

TEST_F(Reading, ALoanStaysWhatItWasUntilItIsReturnedOnceAndWholeToItsReader) {
    DDS_DataReader* other = node_.reader();
    ProbeSeq first;
    ProbeSeq second;
    ASSERT_EQ(first.receive(reader_, selector(1, 2)), ok);
    ASSERT_EQ(second.receive(reader_, selector(1, 2)), ok);
    EXPECT_EQ(DDS_SampleInfoSeq_has_ownership(&first.infos), 0);
    EXPECT_EQ(summary(first.content()), "1:1 1:2");
    EXPECT_EQ(first.receive(reader_), refused) << "still on loan";
    EXPECT_EQ(node_.remove(reader_), refused);
    EXPECT_EQ(DDS_Subscriber_delete_contained_entities(node_.subscriber()), refused);
    EXPECT_EQ(DDS_DomainParticipant_delete_contained_entities(node_.participant()), refused);

    void** lent = first.data.loanedSamples;
    void* foreign[2] = {};
    const struct {
        const char* what;
        DDS_DataReader* reader;
        void** samples;
        DDS_Long count;
        DDS_SampleInfoSeq* infos;
    } cases[] = {
        {"another reader", other, lent, 2, &first.infos},
        {"foreign samples", reader_, foreign, 2, &first.infos},
        {"no samples", reader_, nullptr, 2, &first.infos},
        {"a part", reader_, lent, 1, &first.infos},
        {"infos of another loan", reader_, lent, 2, &second.infos},
    };
    for (const auto& [what, reader, samples, count, infos] : cases) {
        EXPECT_EQ(DDS_DataReader_return_loan_untypedI(reader, samples, count, infos), refused)
            << what;
    }
    EXPECT_EQ(first.return_loan(reader_), ok);
    EXPECT_EQ(DDS_SampleInfoSeq_has_ownership(&first.infos), 1);
    EXPECT_EQ(DDS_DataReader_return_loan_untypedI(reader_, lent, 2, &first.infos), refused);
    EXPECT_EQ(summary(second.content()), "1:3 1:4");
    EXPECT_EQ(second.return_loan(reader_), ok);
    EXPECT_EQ(summary(receive(reader_)), "1:5");
}

TEST_F(Reading, AConditionSelectsByItsOwnStates) {
    DDS_DataReader* other = node_.reader();
    DDS_ReadCondition* unread = DDS_DataReader_create_readcondition(
        reader_, DDS_NOT_READ_SAMPLE_STATE, DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE);
    DDS_ReadSelectorI by_condition = selector(0, 2, DDS_READ_SAMPLE_STATE);
    by_condition.condition = unread;
    EXPECT_EQ(summary(receive(reader_, by_condition)), "1:1 1:2");
    EXPECT_EQ(summary(receive(reader_, by_condition)), "1:3 1:4");
    EXPECT_EQ(ProbeSeq().receive(other, by_condition), refused);
    EXPECT_EQ(DDS_DataReader_delete_readcondition(other, unread), refused);
    EXPECT_EQ(node_.remove(reader_), refused) << "a read condition is outstanding";
    EXPECT_EQ(DDS_DataReader_delete_readcondition(reader_, unread), ok);
    EXPECT_EQ(node_.remove(reader_), ok);
}

TEST_F(Reading, ASampleThatStopsBeingDecodableIsSkippedByEveryForm) {
    receive(reader_);
    const auto write_three = [&] {
        for (const DDS_Long value : {1, 2, 3}) {
            const Probe probe(1, value);
            const DDS_WriteParams_t at_value = {DDS_HANDLE_NIL, {value, 0}};
            ASSERT_EQ(DDS_DataWriter_write_untypedI(writer_, &probe, &at_value), ok);
        }
    };
    const DDS_Long before = undecodable_value.exchange(2);
    orvane::test::Reports reports;
    write_three();
    const std::vector<Received> samples = receive(reader_);
    ASSERT_EQ(summary(samples), "1:1 1:3");
    EXPECT_EQ(samples[1].info.source_timestamp.sec, 3) << "each has its own info";
    EXPECT_EQ(reports.take(),
              std::vector<std::string>{"DDS_DataReader_read_or_take_untypedI:"
                                       "samples that cannot be decoded were skipped"});
    std::set<void*> lent;
    for (int round = 0; round < 6; ++round) {
        write_three();
        ProbeSeq loan;
        ASSERT_EQ(loan.receive(reader_), ok);
        lent.insert(loan.data.loanedSamples, loan.data.loanedSamples + loan.data.count);
        ASSERT_EQ(loan.return_loan(reader_), ok);
    }
    EXPECT_LE(lent.size(), 3U) << "what came back and what was skipped is lent again";
    write_three();
    ProbeSeq copies(3);
    ASSERT_EQ(copies.receive(reader_), ok);
    EXPECT_EQ(summary(copies.content()), "1:1 1:3");
    write_three();
    Probe probe;
    DDS_SampleInfo info{};
    for (const DDS_Long value : {1, 3}) {
        ASSERT_EQ(DDS_DataReader_read_or_take_next_sample_untypedI(reader_, &probe, &info, 1), ok);
        EXPECT_EQ(probe.value(), value);
    }
    ASSERT_EQ(write(writer_, 1, 2), ok);
    EXPECT_EQ(ProbeSeq().receive(reader_), no_data);
    EXPECT_EQ(DDS_DataReader_add_sample_to_remote_writer_queue_untypedI(reader_, &probe),
              DDS_RETCODE_UNSUPPORTED);
    undecodable_value = before;
}

/// Writes bytes in place of an encoding. Another participant's reader decodes them on arrival.
void send(DDS_DataWriter* writer, const orvane::test::Bytes& bytes,
          decltype(&DDS_DataWriter_write_untypedI) write = DDS_DataWriter_write_untypedI) {
    const Probe probe(1);
    sent_instead = bytes;
    EXPECT_EQ(write(writer, &probe, nullptr), ok);
    sent_instead.reset();
}

TEST(CorruptPayloads, AreDroppedAndTheNextSampleComesThrough) {
    const ProbeNode node;
    const ProbeNode receiver;
    DDS_DataWriter* writer = node.writer();
    DDS_DataReader* reader = receiver.reader();
    ASSERT_TRUE(await_reader(writer));
    DDS_Long value = 100;
    for (const char* payload : {"00040000", "00030000 0000", "00030000 00000800 0100",
                                "00030000 04000c00 05000000 'te'"}) {
        send(writer, orvane::test::bytes(payload));
        ASSERT_EQ(write(writer, 1, ++value), ok);
        EXPECT_EQ(summary(await_samples(reader, 1)), "1:" + std::to_string(value));
    }
    const Probe probe(1);
    ASSERT_EQ(write(writer, 1, undecodable_value), ok);
    send(writer, orvane::test::bytes("00030000 0000"), DDS_DataWriter_dispose_untypedI);
    ASSERT_EQ(write(writer, 1, ++value), ok);
    const std::vector<Received> samples = await_samples(reader, 1);
    EXPECT_EQ(summary(samples), "1:" + std::to_string(value));
    EXPECT_EQ(samples.at(0).info.disposed_generation_count, 0) << "a corrupt key disposes nothing";
    ASSERT_EQ(DDS_DataWriter_dispose_untypedI(writer, &probe, nullptr), ok);
    EXPECT_EQ(summary(await_samples(reader, 1)), "1-");
}

using Texts = std::vector<std::string>;

/// A string sequence of these texts.
struct TextSeq {
    explicit TextSeq(const Texts& texts) {
        EXPECT_EQ(pexa::dds::store_strings(texts, sequence), pexa::Status::ok);
    }
    TextSeq(const TextSeq&) = delete;
    TextSeq& operator=(const TextSeq&) = delete;
    ~TextSeq() { DDS_StringSeq_finalize(&sequence); }

    DDS_StringSeq sequence{};
};

DDS_ContentFilteredTopic* filtered(const ProbeNode& node, const std::string& name,
                                   const char* expression, const Texts& parameters = {}) {
    TextSeq texts(parameters);
    return DDS_DomainParticipant_create_contentfilteredtopic(
        node.participant(), name.c_str(), node.topic, expression, &texts.sequence);
}

TEST(FilteredTopics, LetThroughWhatMatchesTheirParameters) {
    const ProbeNode node;
    DDS_DataWriter* writer = node.writer();
    DDS_ContentFilteredTopic* topic =
        filtered(node, topic_of_this_test() + "_filtered",
                 "invocation > %0 AND hostAndAppId.rtps_host_id < %1", {"10", "5"});
    ASSERT_NE(topic, nullptr);
    DDS_DataReader* reader = node.reader_of(DDS_ContentFilteredTopic_as_topicdescription(topic));
    const std::pair<Texts, const char*> cases[] = {
        {{"10", "5"}, "1:11 4:101"}, {{"100", "5"}, "4:101"}, {{"0"}, "4:101"}};
    for (const auto& [parameters, passing] : cases) {
        TextSeq texts(parameters);
        EXPECT_EQ(DDS_ContentFilteredTopic_set_expression_parameters(topic, &texts.sequence),
                  parameters.size() == 2 ? ok : bad_parameter);
        for (const auto& [id, value] : {std::pair(1, 10), {1, 11}, {5, 101}, {4, 101}}) {
            EXPECT_EQ(write(writer, id, value), ok);
        }
        EXPECT_EQ(summary(receive(reader)), passing);
    }
    TextSeq kept({});
    EXPECT_EQ(DDS_ContentFilteredTopic_get_expression_parameters(topic, &kept.sequence), ok);
    EXPECT_EQ(pexa::dds::to_strings(&kept.sequence), (Texts{"100", "5"}));
}

TEST(FilteredTopics, AreDescriptionsOfTheirOwnThatKeepTheTopic) {
    const ProbeNode node;
    const std::string name = topic_of_this_test() + "_filtered";
    DDS_ContentFilteredTopic* topic = filtered(node, name, "invocation = 1");
    ASSERT_NE(topic, nullptr);
    DDS_TopicDescription* description = DDS_ContentFilteredTopic_as_topicdescription(topic);
    EXPECT_EQ(DDS_DomainParticipant_lookup_topicdescription(node.participant(), name.c_str()),
              description);
    EXPECT_EQ(DDS_Topic_narrow(description), nullptr);
    EXPECT_EQ(DDS_ContentFilteredTopic_get_related_topic(topic), node.topic);
    EXPECT_STREQ(DDS_ContentFilteredTopic_get_filter_expression(topic), "invocation = 1");
    EXPECT_EQ(filtered(node, name, "invocation = 2"), nullptr) << "the name is taken";
    EXPECT_EQ(filtered(node, "", "invocation = 1"), nullptr);
    const ProbeNode other(topic_of_this_test() + "_other");
    EXPECT_EQ(DDS_DomainParticipant_create_contentfilteredtopic(
                  other.participant(), "foreign", node.topic, "invocation = 1", nullptr),
              nullptr);
    orvane::test::Reports reports;
    EXPECT_EQ(filtered(node, "bad", "invocation = 1 AND (invocation = 2"), nullptr);
    EXPECT_NE(reports.take().at(0).find("character 35"), std::string::npos);

    DDS_DataReader* reader = node.reader_of(description);
    EXPECT_EQ(node.remove(node.topic), refused);
    EXPECT_EQ(node.remove(topic), refused);
    EXPECT_EQ(node.remove(reader), ok);
    EXPECT_EQ(node.remove(topic), ok);
    EXPECT_EQ(node.remove(node.topic), ok);
}

}  // namespace

#include <gtest/gtest.h>

#include "platform/dds/interface/string_list.hpp"
#include "tests/platform/dds/entities/probe_node.hpp"
#include "tests/support/reports.hpp"

namespace {

/// A string sequence with these texts.
class Texts {
public:
    explicit Texts(const std::vector<std::string>& texts = {}) {
        DDS_StringSeq_initialize(&sequence_);
        EXPECT_EQ(pexa::dds::store_strings(texts, sequence_), DDS_RETCODE_OK);
    }
    Texts(const Texts&) = delete;
    Texts& operator=(const Texts&) = delete;
    ~Texts() { DDS_StringSeq_finalize(&sequence_); }

    DDS_StringSeq* get() { return &sequence_; }

private:
    DDS_StringSeq sequence_{};
};

DDS_ContentFilteredTopic* filtered(const ProbeNode& node, const std::string& name,
                                   const char* expression,
                                   const std::vector<std::string>& parameters) {
    Texts texts(parameters);
    return DDS_DomainParticipant_create_contentfilteredtopic(node.participant, name.c_str(),
                                                             node.topic, expression, texts.get());
}

TEST(FilteredTopics, LetThroughWhatMatchesTheirParameters) {
    const ProbeNode node;
    DDS_DataWriter* writer = node.writer();
    DDS_ContentFilteredTopic* topic =
        filtered(node, topic_of_this_test() + "_filtered", "value > %0 AND id < %1", {"10", "5"});
    ASSERT_NE(topic, nullptr);
    DDS_DataReader* reader =
        node.reader(nullptr, DDS_ContentFilteredTopic_as_topicdescription(topic));
    for (const Probe& probe : {Probe(1, 10), Probe(1, 11), Probe(5, 11), Probe(4, 12)}) {
        ASSERT_EQ(write(writer, probe), DDS_RETCODE_OK);
    }
    EXPECT_EQ(summary(receive(reader)), "1:11 4:12");

    Texts others({"100", "5"});
    ASSERT_EQ(DDS_ContentFilteredTopic_set_expression_parameters(topic, others.get()),
              DDS_RETCODE_OK);
    ASSERT_EQ(write(writer, {1, 99}), DDS_RETCODE_OK);
    ASSERT_EQ(write(writer, {1, 101}), DDS_RETCODE_OK);
    EXPECT_EQ(summary(receive(reader)), "1:101");

    Texts missing({"100"});
    Texts kept;
    EXPECT_EQ(DDS_ContentFilteredTopic_set_expression_parameters(topic, missing.get()),
              DDS_RETCODE_BAD_PARAMETER);
    ASSERT_EQ(DDS_ContentFilteredTopic_get_expression_parameters(topic, kept.get()),
              DDS_RETCODE_OK);
    EXPECT_EQ(pexa::dds::to_strings(kept.get()), (std::vector<std::string>{"100", "5"}));
    ASSERT_EQ(write(writer, {1, 99}), DDS_RETCODE_OK);
    EXPECT_EQ(summary(receive(reader)), "") << "the old parameters stay";
}

TEST(FilteredTopics, AreDescriptionsOfTheirOwnThatKeepTheTopic) {
    const ProbeNode node;
    const std::string name = topic_of_this_test() + "_filtered";
    DDS_ContentFilteredTopic* topic = filtered(node, name, "value = 1", {});
    ASSERT_NE(topic, nullptr);
    DDS_TopicDescription* description = DDS_ContentFilteredTopic_as_topicdescription(topic);
    EXPECT_EQ(DDS_DomainParticipant_lookup_topicdescription(node.participant, name.c_str()),
              description);
    EXPECT_EQ(DDS_Topic_narrow(description), nullptr);
    EXPECT_EQ(DDS_ContentFilteredTopic_get_related_topic(topic), node.topic);
    EXPECT_STREQ(DDS_ContentFilteredTopic_get_filter_expression(topic), "value = 1");
    EXPECT_EQ(filtered(node, name, "value = 2", {}), nullptr) << "the name is taken";

    DDS_DataReader* reader = node.reader(nullptr, description);
    const DDS_ReturnCode_t refused = DDS_RETCODE_PRECONDITION_NOT_MET;
    EXPECT_EQ(DDS_DomainParticipant_delete_topic(node.participant, node.topic), refused);
    EXPECT_EQ(DDS_DomainParticipant_delete_contentfilteredtopic(node.participant, topic), refused);
    ASSERT_EQ(DDS_Subscriber_delete_datareader(node.subscriber, reader), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_DomainParticipant_delete_contentfilteredtopic(node.participant, topic),
              DDS_RETCODE_OK);
    EXPECT_EQ(DDS_DomainParticipant_delete_topic(node.participant, node.topic), DDS_RETCODE_OK);
}

TEST(FilteredTopics, ABadExpressionIsReportedWithItsPlace) {
    const ProbeNode node;
    Reports reports;
    EXPECT_EQ(filtered(node, "bad", "value = 1 AND (id = 2", {}), nullptr);
    const std::vector<std::string> texts = reports.take();
    ASSERT_EQ(texts.size(), 1U);
    EXPECT_NE(texts[0].find("character 22"), std::string::npos) << texts[0];
    EXPECT_EQ(texts[0].find("DDS_DomainParticipant_create_contentfilteredtopic:"), 0U);
    const ProbeNode other(topic_of_this_test() + "_other");
    EXPECT_EQ(DDS_DomainParticipant_create_contentfilteredtopic(other.participant, "foreign",
                                                                node.topic, "value = 1", nullptr),
              nullptr);
    EXPECT_EQ(filtered(node, "", "value = 1", {}), nullptr);
}

}  // namespace

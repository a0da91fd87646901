#include <gtest/gtest.h>

#include "platform/dds/interface/string_list.hpp"
#include "tests/platform/dds/entities/probe_node.hpp"

namespace {

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

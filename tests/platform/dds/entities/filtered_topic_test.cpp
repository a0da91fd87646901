#include <gtest/gtest.h>

#include "platform/dds/interface/string_list.hpp"
#include "tests/platform/dds/entities/probe_node.hpp"

namespace {

using Texts = std::vector<std::string>;

/// Calls an operation with a string sequence of these texts.
template <typename Operation>
auto with(const Texts& texts, Operation operation) {
    DDS_StringSeq sequence{};
    DDS_StringSeq_initialize(&sequence);
    EXPECT_EQ(pexa::dds::store_strings(texts, sequence), pexa::Status::ok);
    auto result = operation(&sequence);
    DDS_StringSeq_finalize(&sequence);
    return result;
}

DDS_ContentFilteredTopic* filtered(const ProbeNode& node, const std::string& name,
                                   const char* expression, const Texts& parameters,
                                   DDS_Topic* topic = nullptr) {
    return with(parameters, [&](DDS_StringSeq* texts) {
        return DDS_DomainParticipant_create_contentfilteredtopic(
            node.participant(), name.c_str(), topic != nullptr ? topic : node.topic, expression,
            texts);
    });
}

TEST(FilteredTopics, LetThroughWhatMatchesTheirParameters) {
    const ProbeNode node;
    DDS_DataWriter* writer = node.writer();
    DDS_ContentFilteredTopic* topic =
        filtered(node, topic_of_this_test() + "_filtered",
                 "invocation > %0 AND hostAndAppId.rtps_host_id < %1", {"10", "5"});
    ASSERT_NE(topic, nullptr);
    DDS_DataReader* reader = node.reader_of(DDS_ContentFilteredTopic_as_topicdescription(topic));
    const auto passing = [&] {
        for (const Probe& probe : {Probe(1, 10), Probe(1, 11), Probe(5, 101), Probe(4, 101)}) {
            EXPECT_EQ(write(writer, probe), ok);
        }
        return summary(receive(reader));
    };
    const auto set_parameters = [&](DDS_StringSeq* texts) {
        return DDS_ContentFilteredTopic_set_expression_parameters(topic, texts);
    };
    EXPECT_EQ(passing(), "1:11 4:101");
    EXPECT_EQ(with({"100", "5"}, set_parameters), ok);
    EXPECT_EQ(passing(), "4:101");
    EXPECT_EQ(with({"0"}, set_parameters), bad_parameter);
    EXPECT_EQ(passing(), "4:101") << "the old parameters stay";
    EXPECT_EQ(with({},
                   [&](DDS_StringSeq* kept) {
                       EXPECT_EQ(DDS_ContentFilteredTopic_get_expression_parameters(topic, kept),
                                 ok);
                       return pexa::dds::to_strings(kept);
                   }),
              (Texts{"100", "5"}));
}

TEST(FilteredTopics, AreDescriptionsOfTheirOwnThatKeepTheTopic) {
    const ProbeNode node;
    const std::string name = topic_of_this_test() + "_filtered";
    DDS_ContentFilteredTopic* topic = filtered(node, name, "invocation = 1", {});
    ASSERT_NE(topic, nullptr);
    DDS_TopicDescription* description = DDS_ContentFilteredTopic_as_topicdescription(topic);
    EXPECT_EQ(DDS_DomainParticipant_lookup_topicdescription(node.participant(), name.c_str()),
              description);
    EXPECT_EQ(DDS_Topic_narrow(description), nullptr);
    EXPECT_EQ(DDS_ContentFilteredTopic_get_related_topic(topic), node.topic);
    EXPECT_STREQ(DDS_ContentFilteredTopic_get_filter_expression(topic), "invocation = 1");
    EXPECT_EQ(filtered(node, name, "invocation = 2", {}), nullptr) << "the name is taken";

    DDS_DataReader* reader = node.reader_of(description);
    EXPECT_EQ(node.remove(node.topic), refused);
    EXPECT_EQ(node.remove(topic), refused);
    EXPECT_EQ(node.remove(reader), ok);
    EXPECT_EQ(node.remove(topic), ok);
    EXPECT_EQ(node.remove(node.topic), ok);
}

TEST(FilteredTopics, ABadExpressionIsReportedWithItsPlace) {
    const ProbeNode node;
    orvane::test::Reports reports;
    EXPECT_EQ(filtered(node, "bad", "invocation = 1 AND (invocation = 2", {}), nullptr);
    const std::vector<std::string> texts = reports.take();
    ASSERT_EQ(texts.size(), 1U);
    EXPECT_NE(texts[0].find("character 35"), std::string::npos) << texts[0];
    EXPECT_EQ(texts[0].find("DDS_DomainParticipant_create_contentfilteredtopic:"), 0U);
    const ProbeNode other(topic_of_this_test() + "_other");
    EXPECT_EQ(filtered(other, "foreign", "invocation = 1", {}, node.topic), nullptr);
    EXPECT_EQ(filtered(node, "", "invocation = 1", {}), nullptr);
}

}  // namespace

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "../platform_core/reports.hpp"
#include "probe_node.hpp"

namespace {

struct NullCall {
    const char* operation;
    const char* argument;
    /// @return whether the result is the one for a refused argument
    std::function<bool()> refused;
};

template <typename Result>
bool says_nothing(Result result) {
    return result == Result{};
}
bool says_nothing(DDS_ReturnCode_t code) {
    return code == DDS_RETCODE_BAD_PARAMETER;
}
bool says_nothing(DDS_InstanceHandle_t handle) {
    return DDS_InstanceHandle_equals(&handle, &DDS_HANDLE_NIL) != 0;
}
bool says_nothing(DDS_DomainId_t domain) {
    return domain == -1;
}

/// An operation called with zero for every argument.
template <typename Result, typename... Arguments>
NullCall null_call(const char* name, const char* argument, Result (*operation)(Arguments...)) {
    return {name, argument, [operation] { return says_nothing(operation(Arguments{}...)); }};
}

#define NULL_CALL(operation, argument) null_call(#operation, argument, operation)

const std::vector<NullCall>& null_calls() {
    static const std::vector<NullCall> calls = {
        NULL_CALL(DDS_Entity_enable, "entity"),
        NULL_CALL(DDS_Entity_is_enabled, "entity"),
        NULL_CALL(DDS_Entity_get_status_changes, "entity"),
        NULL_CALL(DDS_Entity_get_instance_handle, "entity"),
        NULL_CALL(DDS_Entity_get_statuscondition, "entity"),
        NULL_CALL(DDS_DomainParticipant_as_entity, "participant"),
        NULL_CALL(DDS_Topic_as_entity, "topic"),
        NULL_CALL(DDS_Publisher_as_entity, "publisher"),
        NULL_CALL(DDS_Subscriber_as_entity, "subscriber"),
        NULL_CALL(DDS_DataWriter_as_entity, "writer"),
        NULL_CALL(DDS_DataReader_as_entity, "reader"),

        NULL_CALL(DDS_DomainParticipantFactory_get_qos, "factory"),
        NULL_CALL(DDS_DomainParticipantFactory_set_qos, "factory"),
        NULL_CALL(DDS_DomainParticipantFactory_create_participant, "factory"),
        NULL_CALL(DDS_DomainParticipantFactory_delete_participant, "factory"),
        NULL_CALL(DDS_DomainParticipantFactory_lookup_participant, "factory"),
        NULL_CALL(DDS_DomainParticipantFactory_wrap_participant, "factory"),
        NULL_CALL(DDS_DomainParticipantFactory_get_default_participant_qos, "factory"),
        NULL_CALL(DDS_DomainParticipantFactory_set_default_participant_qos, "factory"),
        NULL_CALL(DDS_DomainParticipantFactory_get_qos_profiles, "factory"),
        NULL_CALL(DDS_DomainParticipantFactory_get_qos_profile_libraries, "factory"),
        NULL_CALL(DDS_DomainParticipantFactory_get_participant_qos_from_profile, "factory"),
        NULL_CALL(DDS_DomainParticipantFactory_get_publisher_qos_from_profile, "factory"),
        NULL_CALL(DDS_DomainParticipantFactory_get_subscriber_qos_from_profile, "factory"),
        NULL_CALL(DDS_DomainParticipantFactory_get_topic_qos_from_profile_w_topic_name, "factory"),
        NULL_CALL(DDS_DomainParticipantFactory_get_datawriter_qos_from_profile_w_topic_name,
                  "factory"),
        NULL_CALL(DDS_DomainParticipantFactory_get_datareader_qos_from_profile_w_topic_name,
                  "factory"),

        NULL_CALL(DDS_DomainParticipant_get_participant_factoryI, "participant"),
        NULL_CALL(DDS_DomainParticipant_get_domain_id, "participant"),
        NULL_CALL(DDS_DomainParticipant_get_qos, "participant"),
        NULL_CALL(DDS_DomainParticipant_set_qos, "participant"),
        NULL_CALL(DDS_DomainParticipant_set_listener, "participant"),
        NULL_CALL(DDS_DomainParticipant_create_publisher, "participant"),
        NULL_CALL(DDS_DomainParticipant_delete_publisher, "participant"),
        NULL_CALL(DDS_DomainParticipant_create_subscriber, "participant"),
        NULL_CALL(DDS_DomainParticipant_delete_subscriber, "participant"),
        NULL_CALL(DDS_DomainParticipant_create_topic, "participant"),
        NULL_CALL(DDS_DomainParticipant_delete_topic, "participant"),
        NULL_CALL(DDS_DomainParticipant_lookup_topicdescription, "participant"),
        NULL_CALL(DDS_DomainParticipant_create_contentfilteredtopic, "participant"),
        NULL_CALL(DDS_DomainParticipant_delete_contentfilteredtopic, "participant"),
        NULL_CALL(DDS_DomainParticipant_delete_contained_entities, "participant"),
        NULL_CALL(DDS_DomainParticipant_assert_liveliness, "participant"),
        NULL_CALL(DDS_DomainParticipant_register_type, "participant"),
        NULL_CALL(DDS_DomainParticipant_unregister_type, "participant"),
        NULL_CALL(DDS_DomainParticipant_get_default_publisher_qos, "participant"),
        NULL_CALL(DDS_DomainParticipant_set_default_publisher_qos, "participant"),
        NULL_CALL(DDS_DomainParticipant_get_default_subscriber_qos, "participant"),
        NULL_CALL(DDS_DomainParticipant_set_default_subscriber_qos, "participant"),
        NULL_CALL(DDS_DomainParticipant_set_default_topic_qos, "participant"),
        NULL_CALL(DDS_DomainParticipant_get_default_topic_qos_w_topic_name, "participant"),
        NULL_CALL(DDS_DomainParticipant_get_default_datawriter_qos_w_topic_name, "participant"),
        NULL_CALL(DDS_DomainParticipant_get_default_datareader_qos_w_topic_name, "participant"),

        NULL_CALL(DDS_Topic_narrow, "topic description"),
        NULL_CALL(DDS_Topic_as_topicdescription, "topic"),
        NULL_CALL(DDS_ContentFilteredTopic_as_topicdescription, "content-filtered topic"),
        NULL_CALL(DDS_TopicDescription_get_name, "topic description"),
        NULL_CALL(DDS_TopicDescription_get_type_name, "topic description"),
        NULL_CALL(DDS_TopicDescription_get_participant, "topic description"),
        NULL_CALL(DDS_Topic_get_qos, "topic"),
        NULL_CALL(DDS_Topic_set_qos, "topic"),
        NULL_CALL(DDS_Topic_set_listener, "topic"),
        NULL_CALL(DDS_Topic_get_inconsistent_topic_status, "topic"),
        NULL_CALL(DDS_ContentFilteredTopic_get_filter_expression, "content-filtered topic"),
        NULL_CALL(DDS_ContentFilteredTopic_get_expression_parameters, "content-filtered topic"),
        NULL_CALL(DDS_ContentFilteredTopic_set_expression_parameters, "content-filtered topic"),
        NULL_CALL(DDS_ContentFilteredTopic_get_related_topic, "content-filtered topic"),

        NULL_CALL(DDS_Publisher_get_qos, "publisher"),
        NULL_CALL(DDS_Publisher_set_qos, "publisher"),
        NULL_CALL(DDS_Publisher_set_listener, "publisher"),
        NULL_CALL(DDS_Publisher_create_datawriter, "publisher"),
        NULL_CALL(DDS_Publisher_delete_datawriter, "publisher"),
        NULL_CALL(DDS_Publisher_lookup_datawriter, "publisher"),
        NULL_CALL(DDS_Publisher_delete_contained_entities, "publisher"),
        NULL_CALL(DDS_Publisher_get_default_datawriter_qos, "publisher"),
        NULL_CALL(DDS_Publisher_set_default_datawriter_qos, "publisher"),
        NULL_CALL(DDS_Publisher_get_participant, "publisher"),

        NULL_CALL(DDS_DataWriter_get_qos, "writer"),
        NULL_CALL(DDS_DataWriter_set_qos, "writer"),
        NULL_CALL(DDS_DataWriter_set_listener, "writer"),
        NULL_CALL(DDS_DataWriter_get_topic, "writer"),
        NULL_CALL(DDS_DataWriter_get_publisher, "writer"),
        NULL_CALL(DDS_DataWriter_compare_typeI, "writer"),
        NULL_CALL(DDS_DataWriter_write_untypedI, "writer"),
        NULL_CALL(DDS_DataWriter_dispose_untypedI, "writer"),
        NULL_CALL(DDS_DataWriter_register_instance_untypedI, "writer"),
        NULL_CALL(DDS_DataWriter_unregister_instance_untypedI, "writer"),
        NULL_CALL(DDS_DataWriter_get_key_value_untypedI, "writer"),
        NULL_CALL(DDS_DataWriter_lookup_instance_untypedI, "writer"),
        NULL_CALL(DDS_DataWriter_wait_for_acknowledgments, "writer"),
        NULL_CALL(DDS_DataWriter_flush, "writer"),
        NULL_CALL(DDS_DataWriter_assert_liveliness, "writer"),
        NULL_CALL(DDS_DataWriter_get_publication_matched_status, "writer"),
        NULL_CALL(DDS_DataWriter_get_liveliness_lost_status, "writer"),
        NULL_CALL(DDS_DataWriter_get_offered_deadline_missed_status, "writer"),
        NULL_CALL(DDS_DataWriter_get_offered_incompatible_qos_status, "writer"),
        NULL_CALL(DDS_DataWriter_get_matched_subscriptions, "writer"),

        NULL_CALL(DDS_Subscriber_get_qos, "subscriber"),
        NULL_CALL(DDS_Subscriber_set_qos, "subscriber"),
        NULL_CALL(DDS_Subscriber_set_listener, "subscriber"),
        NULL_CALL(DDS_Subscriber_create_datareader, "subscriber"),
        NULL_CALL(DDS_Subscriber_delete_datareader, "subscriber"),
        NULL_CALL(DDS_Subscriber_lookup_datareader, "subscriber"),
        NULL_CALL(DDS_Subscriber_delete_contained_entities, "subscriber"),
        NULL_CALL(DDS_Subscriber_get_default_datareader_qos, "subscriber"),
        NULL_CALL(DDS_Subscriber_set_default_datareader_qos, "subscriber"),
        NULL_CALL(DDS_Subscriber_get_participant, "subscriber"),

        NULL_CALL(DDS_DataReader_get_qos, "reader"),
        NULL_CALL(DDS_DataReader_set_qos, "reader"),
        NULL_CALL(DDS_DataReader_set_listener, "reader"),
        NULL_CALL(DDS_DataReader_get_topicdescription, "reader"),
        NULL_CALL(DDS_DataReader_get_subscriber, "reader"),
        NULL_CALL(DDS_DataReader_compare_typeI, "reader"),
        NULL_CALL(DDS_DataReader_read_or_take_untypedI, "reader"),
        NULL_CALL(DDS_DataReader_read_or_take_next_sample_untypedI, "reader"),
        NULL_CALL(DDS_DataReader_return_loan_untypedI, "reader"),
        NULL_CALL(DDS_DataReader_get_key_value_untypedI, "reader"),
        NULL_CALL(DDS_DataReader_lookup_instance_untypedI, "reader"),
        NULL_CALL(DDS_DataReader_add_sample_to_remote_writer_queue_untypedI, "reader"),
        NULL_CALL(DDS_DataReader_wait_for_historical_data, "reader"),
        NULL_CALL(DDS_DataReader_get_subscription_matched_status, "reader"),
        NULL_CALL(DDS_DataReader_get_sample_lost_status, "reader"),
        NULL_CALL(DDS_DataReader_get_sample_rejected_status, "reader"),
        NULL_CALL(DDS_DataReader_get_liveliness_changed_status, "reader"),
        NULL_CALL(DDS_DataReader_get_requested_deadline_missed_status, "reader"),
        NULL_CALL(DDS_DataReader_get_requested_incompatible_qos_status, "reader"),
        NULL_CALL(DDS_DataReader_get_matched_publications, "reader"),
        NULL_CALL(DDS_DataReader_create_readcondition, "reader"),
        NULL_CALL(DDS_DataReader_delete_readcondition, "reader"),

        NULL_CALL(DDS_ReadCondition_get_datareader, "read condition"),
        NULL_CALL(DDS_ReadCondition_as_condition, "read condition"),
        NULL_CALL(DDS_GuardCondition_delete, "guard condition"),
        NULL_CALL(DDS_GuardCondition_set_trigger_value, "guard condition"),
        NULL_CALL(DDS_GuardCondition_as_condition, "guard condition"),
        NULL_CALL(DDS_StatusCondition_set_enabled_statuses, "status condition"),
        NULL_CALL(DDS_StatusCondition_get_enabled_statuses, "status condition"),
        NULL_CALL(DDS_StatusCondition_get_entity, "status condition"),
        NULL_CALL(DDS_StatusCondition_as_condition, "status condition"),
        NULL_CALL(DDS_Condition_get_trigger_value, "condition"),
        NULL_CALL(DDS_WaitSet_delete, "wait set"),
        NULL_CALL(DDS_WaitSet_attach_condition, "wait set"),
        NULL_CALL(DDS_WaitSet_detach_condition, "wait set"),
        NULL_CALL(DDS_WaitSet_wait, "wait set"),
    };
    return calls;
}

#undef NULL_CALL

TEST(NullArguments, EveryOperationOnANullEntityIsRefusedWithOneReport) {
    Reports reports;
    for (const NullCall& call : null_calls()) {
        EXPECT_TRUE(call.refused()) << call.operation;
        EXPECT_EQ(reports.take(), std::vector<std::string>{std::string(call.operation) +
                                                           ":bad parameter: " + call.argument});
    }
}

TEST(NullArguments, AnOperationSaysWhichOfItsArgumentsIsMissing) {
    const ProbeNode node;
    DDS_DomainParticipantFactory* factory = DDS_DomainParticipantFactory_get_instance();
    DDS_DataWriter* writer = node.writer();
    DDS_DataReader* reader = node.reader();
    DDS_WaitSet* wait_set = DDS_WaitSet_new();
    DDS_StringSeq names{};
    DDS_ConditionSeq active{};
    DDS_SampleInfoSeq infos{};
    DDS_UntypedSampleSeqI data{};
    Probe probe;
    DDS_DataWriterQos qos{};
    const DDS_ReturnCode_t refused = DDS_RETCODE_BAD_PARAMETER;
    Reports reports;
    const auto expect = [&](const char* argument) {
        const std::vector<std::string> texts = reports.take();
        ASSERT_EQ(texts.size(), 1u) << argument;
        EXPECT_EQ(texts[0].substr(texts[0].find(':')), std::string(":bad parameter: ") + argument);
    };

    EXPECT_EQ(DDS_DomainParticipantFactory_delete_participant(factory, nullptr), refused);
    expect("participant");
    EXPECT_EQ(DDS_DomainParticipantFactory_get_qos_profiles(factory, nullptr, "library"), refused);
    expect("names");
    EXPECT_EQ(DDS_DomainParticipantFactory_get_qos_profiles(factory, &names, nullptr), refused);
    expect("library");
    EXPECT_EQ(DDS_DomainParticipantFactory_get_datawriter_qos_from_profile_w_topic_name(
                  factory, &qos, "library", nullptr, "topic"),
              refused);
    expect("profile");
    EXPECT_EQ(DDS_DomainParticipant_lookup_topicdescription(node.participant, nullptr), nullptr);
    expect("name");
    EXPECT_EQ(
        DDS_DomainParticipant_create_topic(node.participant, "name", nullptr, nullptr, nullptr, 0),
        nullptr);
    expect("typeName");
    EXPECT_EQ(DDS_DomainParticipant_create_contentfilteredtopic(node.participant, "name",
                                                                node.topic, nullptr, nullptr),
              nullptr);
    expect("expression");
    EXPECT_EQ(DDS_Publisher_create_datawriter(node.publisher, nullptr, nullptr, nullptr, 0),
              nullptr);
    expect("topic");
    EXPECT_EQ(DDS_Publisher_delete_datawriter(node.publisher, nullptr), refused);
    expect("writer");
    EXPECT_EQ(DDS_DataWriter_get_qos(writer, nullptr), refused);
    expect("qos");
    EXPECT_EQ(DDS_DataWriter_get_publication_matched_status(writer, nullptr), refused);
    expect("status");
    EXPECT_EQ(DDS_DataWriter_wait_for_acknowledgments(writer, nullptr), refused);
    expect("maxWait");
    EXPECT_EQ(DDS_DataReader_read_or_take_untypedI(reader, nullptr, &data, &infos), refused);
    expect("selector");
    EXPECT_EQ(DDS_DataReader_read_or_take_untypedI(reader, &take_anything, &data, nullptr),
              refused);
    expect("infos");
    EXPECT_EQ(DDS_DataReader_read_or_take_next_sample_untypedI(reader, &probe, nullptr, 0),
              refused);
    expect("info");
    EXPECT_EQ(DDS_DataReader_get_key_value_untypedI(reader, &probe, nullptr), refused);
    expect("handle");
    EXPECT_EQ(DDS_DataReader_delete_readcondition(reader, nullptr), refused);
    expect("read condition");
    EXPECT_EQ(DDS_WaitSet_attach_condition(wait_set, nullptr), refused);
    expect("condition");
    EXPECT_EQ(DDS_WaitSet_wait(wait_set, &active, nullptr), refused);
    expect("timeout");
    EXPECT_EQ(DDS_WaitSet_delete(wait_set), DDS_RETCODE_OK);
}

}  // namespace

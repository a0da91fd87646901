#include "tests/support/node.hpp"

#include <cstdlib>

#include "platform/dds/qos/conversion.hpp"

namespace orvane::test {

namespace {

template <typename Qos>
auto qos_of(const std::function<void(Qos&)>& tweak) {
    auto owned = std::make_unique<pexa::dds::OwnedQos<Qos>>();
    Qos& qos = owned->get();
    qos.reliability = {DDS_RELIABLE_RELIABILITY_QOS, {1, 0}};
    qos.durability.kind = DDS_TRANSIENT_LOCAL_DURABILITY_QOS;
    qos.history.kind = DDS_KEEP_ALL_HISTORY_QOS;
    if (tweak) {
        tweak(qos);
    }
    return owned;
}

/// Waits until a status of an entity says what is wanted, and looks whenever it changes.
template <typename Reached>
bool await_status(DDS_Entity* entity, DDS_StatusMask status, Reached reached) {
    DDS_StatusCondition* condition = DDS_Entity_get_statuscondition(entity);
    DDS_StatusCondition_set_enabled_statuses(condition, status);
    while (!reached()) {
        if (await(DDS_StatusCondition_as_condition(condition)) != DDS_RETCODE_OK) {
            return false;
        }
    }
    return true;
}

}  // namespace

DDS_DomainId_t domain() {
    const char* number = std::getenv("ORVANE_TEST_DOMAIN");
    return number != nullptr ? std::atoi(number) : 99;
}

std::string topic_of_this_test() {
    const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
    return std::string(test->test_suite_name()) + "_" + test->name();
}

DDS_DomainParticipantFactory* Node::factory() {
    return DDS_DomainParticipantFactory_get_instance();
}

Node::Node()
    : participant_(DDS_DomainParticipantFactory_create_participant(
          factory(), domain(), DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE)),
      publisher_(DDS_DomainParticipant_create_publisher(participant_, DDS_QOS_DEFAULT, nullptr,
                                                        DDS_STATUS_MASK_NONE)),
      subscriber_(DDS_DomainParticipant_create_subscriber(participant_, DDS_QOS_DEFAULT, nullptr,
                                                          DDS_STATUS_MASK_NONE)) {
    EXPECT_TRUE(participant_ != nullptr && publisher_ != nullptr && subscriber_ != nullptr);
}

Node::~Node() {
    EXPECT_EQ(DDS_DomainParticipant_delete_contained_entities(participant_), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_DomainParticipantFactory_delete_participant(factory(), participant_),
              DDS_RETCODE_OK);
}

DDS_Topic* Node::obtain_topic(const std::string& name, const char* type_name) const {
    if (DDS_TopicDescription* known =
            DDS_DomainParticipant_lookup_topicdescription(participant_, name.c_str())) {
        return DDS_Topic_narrow(known);
    }
    DDS_Topic* topic = DDS_DomainParticipant_create_topic(
        participant_, name.c_str(), type_name, DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
    EXPECT_NE(topic, nullptr);
    return topic;
}

DDS_DataWriter* Node::writer_of(DDS_Topic* topic, const TweakWriterQos& tweak) const {
    const auto qos = qos_of<DDS_DataWriterQos>(tweak);
    DDS_DataWriter* writer = DDS_Publisher_create_datawriter(publisher_, topic, &qos->get(),
                                                             nullptr, DDS_STATUS_MASK_NONE);
    EXPECT_NE(writer, nullptr);
    return writer;
}

DDS_DataReader* Node::reader_of(DDS_TopicDescription* topic, const TweakReaderQos& tweak) const {
    const auto qos = qos_of<DDS_DataReaderQos>(tweak);
    DDS_DataReader* reader = DDS_Subscriber_create_datareader(subscriber_, topic, &qos->get(),
                                                              nullptr, DDS_STATUS_MASK_NONE);
    EXPECT_NE(reader, nullptr);
    return reader;
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

bool await_data(DDS_DataReader* reader, DDS_SampleStateMask states) {
    DDS_ReadCondition* has_data = DDS_DataReader_create_readcondition(
        reader, states, DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE);
    const DDS_ReturnCode_t result = await(DDS_ReadCondition_as_condition(has_data));
    EXPECT_EQ(DDS_DataReader_delete_readcondition(reader, has_data), DDS_RETCODE_OK);
    return result == DDS_RETCODE_OK;
}

bool await_reader(DDS_DataWriter* writer) {
    DDS_PublicationMatchedStatus status{};
    return await_status(DDS_DataWriter_as_entity(writer), DDS_PUBLICATION_MATCHED_STATUS, [&] {
        return DDS_DataWriter_get_publication_matched_status(writer, &status) == DDS_RETCODE_OK &&
               status.current_count > 0;
    });
}

bool await_writer(DDS_DataReader* reader) {
    DDS_SubscriptionMatchedStatus status{};
    return await_status(DDS_DataReader_as_entity(reader), DDS_SUBSCRIPTION_MATCHED_STATUS, [&] {
        return DDS_DataReader_get_subscription_matched_status(reader, &status) == DDS_RETCODE_OK &&
               status.current_count > 0;
    });
}

}  // namespace orvane::test

// Typed writers and readers over the middleware itself, between two participants of this process.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/platform_core/reports.hpp"
#include "tests/types/sample.hpp"

namespace {

constexpr DDS_Duration_t patience{20, 0};

DDS_DomainParticipantFactory* factory() {
    return DDS_DomainParticipantFactory_get_instance();
}

template <typename Qos>
void keep_everything(Qos& qos) {
    qos.reliability.kind = DDS_RELIABLE_RELIABILITY_QOS;
    qos.durability.kind = DDS_TRANSIENT_LOCAL_DURABILITY_QOS;
    qos.history.kind = DDS_KEEP_ALL_HISTORY_QOS;
}

/// Registers a type.
using Register = DDS_ReturnCode_t (*)(DDS_DomainParticipant*, const char*);

/// A participant with one topic of the running test's name.
class Node {
public:
    explicit Node(Register register_type)
        : participant_(DDS_DomainParticipantFactory_create_participant(
              factory(), ORVANE_TEST_DOMAIN, DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE)) {
        EXPECT_EQ(register_type(participant_, "type::of::the::test"), DDS_RETCODE_OK);
        topic_ = DDS_DomainParticipant_create_topic(
            participant_, testing::UnitTest::GetInstance()->current_test_info()->name(),
            "type::of::the::test", DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
        EXPECT_NE(topic_, nullptr);
    }
    ~Node() {
        EXPECT_EQ(DDS_DomainParticipant_delete_contained_entities(participant_), DDS_RETCODE_OK);
        EXPECT_EQ(DDS_DomainParticipantFactory_delete_participant(factory(), participant_),
                  DDS_RETCODE_OK);
    }
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    [[nodiscard]] DDS_DataWriter* writer() const {
        DDS_DataWriterQos qos;
        EXPECT_EQ(DDS_DataWriterQos_initialize(&qos), DDS_RETCODE_OK);
        keep_everything(qos);
        DDS_Publisher* publisher = DDS_DomainParticipant_create_publisher(
            participant_, DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
        DDS_DataWriter* writer =
            DDS_Publisher_create_datawriter(publisher, topic_, &qos, nullptr, DDS_STATUS_MASK_NONE);
        EXPECT_EQ(DDS_DataWriterQos_finalize(&qos), DDS_RETCODE_OK);
        return writer;
    }
    [[nodiscard]] DDS_DataReader* reader() const {
        DDS_DataReaderQos qos;
        EXPECT_EQ(DDS_DataReaderQos_initialize(&qos), DDS_RETCODE_OK);
        keep_everything(qos);
        DDS_Subscriber* subscriber = DDS_DomainParticipant_create_subscriber(
            participant_, DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
        DDS_DataReader* reader = DDS_Subscriber_create_datareader(
            subscriber, DDS_Topic_as_topicdescription(topic_), &qos, nullptr, DDS_STATUS_MASK_NONE);
        EXPECT_EQ(DDS_DataReaderQos_finalize(&qos), DDS_RETCODE_OK);
        return reader;
    }

private:
    DDS_DomainParticipant* participant_;
    DDS_Topic* topic_;
};

/// Waits until the reader has something that has not been read.
bool await_data(DDS_DataReader* reader) {
    DDS_ReadCondition* condition = DDS_DataReader_create_readcondition(
        reader, DDS_NOT_READ_SAMPLE_STATE, DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE);
    DDS_WaitSet* wait_set = DDS_WaitSet_new();
    DDS_WaitSet_attach_condition(wait_set, DDS_ReadCondition_as_condition(condition));
    DDS_ConditionSeq active{};
    const DDS_ReturnCode_t result = DDS_WaitSet_wait(wait_set, &active, &patience);
    DDS_ConditionSeq_finalize(&active);
    DDS_WaitSet_detach_condition(wait_set, DDS_ReadCondition_as_condition(condition));
    DDS_WaitSet_delete(wait_set);
    DDS_DataReader_delete_readcondition(reader, condition);
    return result == DDS_RETCODE_OK;
}

TEST(EndpointsOverDds, AreNarrowedByTheTypeBehindTheirTopic) {
    const Node node(QEL_KX_ADMIN_StateTypeSupport_register_type);
    DDS_DataWriter* writer = node.writer();
    DDS_DataReader* reader = node.reader();
    ASSERT_TRUE(writer != nullptr && reader != nullptr);
    Reports reports;
    EXPECT_EQ(QEL_KX_LogMessageDataWriter_narrow(writer), nullptr);
    EXPECT_EQ(QEL_KX_LogMessageDataReader_narrow(reader), nullptr);
    EXPECT_EQ(reports.take(),
              (std::vector<std::string>{"TDataWriter_narrow:bad parameter: wrong type writer",
                                        "TDataReader_narrow:bad parameter: wrong type reader"}));
    EXPECT_EQ(QEL_KX_ADMIN_StateDataWriter_narrow(writer), writer);
    EXPECT_EQ(QEL_KX_ADMIN_StateDataReader_narrow(reader), reader);
}

TEST(EndpointsOverDds, LendSamplesWithAnInstancePerLevel) {
    const Node sender(QEL_KX_LogMessageTypeSupport_register_type);
    const Node receiver(QEL_KX_LogMessageTypeSupport_register_type);
    auto* writer = QEL_KX_LogMessageDataWriter_narrow(sender.writer());
    auto* reader = QEL_KX_LogMessageDataReader_narrow(receiver.reader());
    ASSERT_TRUE(writer != nullptr && reader != nullptr);
    Sample<QEL_KX_LogMessage> message;
    fill(*message);
    const DDS_Time_t time{.sec = 1700000000, .nanosec = 500000000};
    ASSERT_EQ(QEL_KX_LogMessageDataWriter_write_w_timestamp(writer, message.get(), &DDS_HANDLE_NIL,
                                                            &time),
              DDS_RETCODE_OK);

    ASSERT_TRUE(await_data(reader));
    QEL_KX_LogMessageSeq data{};
    DDS_SampleInfoSeq infos{};
    ASSERT_EQ(QEL_KX_LogMessageDataReader_take(reader, &data, &infos, DDS_LENGTH_UNLIMITED,
                                               DDS_ANY_SAMPLE_STATE, DDS_ANY_VIEW_STATE,
                                               DDS_ANY_INSTANCE_STATE),
              DDS_RETCODE_OK);
    ASSERT_EQ(QEL_KX_LogMessageSeq_get_length(&data), 1);
    EXPECT_FALSE(QEL_KX_LogMessageSeq_has_ownership(&data));
    EXPECT_EQ(encoded(*QEL_KX_LogMessageSeq_get_reference(&data, 0), 1), encoded(*message, 1));
    const DDS_SampleInfo info = *DDS_SampleInfoSeq_get_reference(&infos, 0);
    EXPECT_EQ(info.source_timestamp.sec, time.sec);
    const DDS_Octet* hash = info.instance_handle.keyHash.value;
    EXPECT_EQ(written(Bytes(hash, hash + 16)), written(bytes("25debdae8f9f3d85bc90521c58754447")));
    EXPECT_EQ(QEL_KX_LogMessageDataReader_return_loan(reader, &data, &infos), DDS_RETCODE_OK);
    EXPECT_EQ(QEL_KX_LogMessageDataReader_take(reader, &data, &infos, DDS_LENGTH_UNLIMITED,
                                               DDS_ANY_SAMPLE_STATE, DDS_ANY_VIEW_STATE,
                                               DDS_ANY_INSTANCE_STATE),
              DDS_RETCODE_NO_DATA);
    EXPECT_EQ(QEL_KX_LogMessageSeq_get_length(&data), 0);

    std::strcpy(message->category, "other");
    const DDS_InstanceHandle_t same =
        QEL_KX_LogMessageDataWriter_lookup_instance(writer, message.get());
    EXPECT_TRUE(DDS_InstanceHandle_equals(&same, &info.instance_handle));
    message->level = 1;
    EXPECT_FALSE(QEL_KX_LogMessageDataWriter_lookup_instance(writer, message.get()).isValid);
    Sample<QEL_KX_LogMessage> key;
    EXPECT_EQ(QEL_KX_LogMessageDataReader_get_key_value(reader, key.get(), &info.instance_handle),
              DDS_RETCODE_OK);
    EXPECT_EQ(key->level, 300);
    EXPECT_EQ(key->hostAndAppId.rtps_app_id, 0x0A0B0C0D);
}

TEST(EndpointsOverDds, CopyKeylessSamplesIntoTheCallersBuffer) {
    const Node sender(QEL_KX_ADMIN_CommandRequestTypeSupport_register_type);
    const Node receiver(QEL_KX_ADMIN_CommandRequestTypeSupport_register_type);
    auto* writer = QEL_KX_ADMIN_CommandRequestDataWriter_narrow(sender.writer());
    auto* reader = QEL_KX_ADMIN_CommandRequestDataReader_narrow(receiver.reader());
    ASSERT_TRUE(writer != nullptr && reader != nullptr);
    Sample<QEL_KX_ADMIN_CommandRequest> request;
    fill(*request);
    set_pairs(request->command, 5);
    ASSERT_EQ(QEL_KX_ADMIN_CommandRequestDataWriter_write(writer, request.get(), &DDS_HANDLE_NIL),
              DDS_RETCODE_OK);

    ASSERT_TRUE(await_data(reader));
    QEL_KX_ADMIN_CommandRequestSeq data{};
    DDS_SampleInfoSeq infos{};
    ASSERT_TRUE(QEL_KX_ADMIN_CommandRequestSeq_set_maximum(&data, 2));
    ASSERT_TRUE(DDS_SampleInfoSeq_set_maximum(&infos, 2));
    ASSERT_EQ(
        QEL_KX_ADMIN_CommandRequestDataReader_read(reader, &data, &infos, 2, DDS_ANY_SAMPLE_STATE,
                                                   DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE),
        DDS_RETCODE_OK);
    ASSERT_EQ(QEL_KX_ADMIN_CommandRequestSeq_get_length(&data), 1);
    EXPECT_TRUE(QEL_KX_ADMIN_CommandRequestSeq_has_ownership(&data));
    EXPECT_EQ(encoded(*QEL_KX_ADMIN_CommandRequestSeq_get_reference(&data, 0), 1),
              encoded(*request, 1));
    EXPECT_EQ(DDS_SampleInfoSeq_get_reference(&infos, 0)->instance_handle.isValid, 0);
    EXPECT_EQ(QEL_KX_ADMIN_CommandRequestDataReader_return_loan(reader, &data, &infos),
              DDS_RETCODE_OK);
    EXPECT_EQ(QEL_KX_ADMIN_CommandRequestSeq_get_length(&data), 1);

    // What cannot be encoded is not written.
    Sample<QEL_KX_ADMIN_CommandRequest> too_many;
    ASSERT_TRUE(QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq_set_maximum(
        &too_many->command._u.categoryAndVerbosity, 6));
    set_pairs(too_many->command, 6);
    EXPECT_EQ(QEL_KX_ADMIN_CommandRequestDataWriter_write(writer, too_many.get(), &DDS_HANDLE_NIL),
              DDS_RETCODE_ERROR);
    QEL_KX_ADMIN_CommandRequestSeq_finalize(&data);
    DDS_SampleInfoSeq_finalize(&infos);
}

TEST(EndpointsOverDds, FilterRequestsByTheNamesInTheTypeCode) {
    DDS_DomainParticipant* participant = DDS_DomainParticipantFactory_create_participant(
        factory(), ORVANE_TEST_DOMAIN, DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
    ASSERT_EQ(QEL_KX_ADMIN_CommandRequestTypeSupport_register_type(participant, "request"),
              DDS_RETCODE_OK);
    DDS_Topic* topic = DDS_DomainParticipant_create_topic(
        participant, "FilterRequests", "request", DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
    DDS_StringSeq none{};
    EXPECT_NE(DDS_DomainParticipant_create_contentfilteredtopic(
                  participant, "good", topic,
                  "targetHostAndAppId.rtps_host_id = 1 and command.filterLevel > 2", &none),
              nullptr);
    EXPECT_EQ(DDS_DomainParticipant_create_contentfilteredtopic(
                  participant, "bad", topic, "targetHostAndAppId.rtps_host = 1", &none),
              nullptr);
    EXPECT_EQ(DDS_DomainParticipant_delete_contained_entities(participant), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_DomainParticipantFactory_delete_participant(factory(), participant),
              DDS_RETCODE_OK);
}

}  // namespace

// Type support, and typed writers and readers between two participants of this process.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/heap_faults.hpp"
#include "tests/support/reports.hpp"
#include "tests/types/sample.hpp"

namespace {

/// Whether readers are told that data sequences have no memory of their own.
bool conceal_buffer = false;

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

using Texts = std::vector<std::string>;
using Writer = QEL_KX_LogMessageDataWriter;
using Sequence = QEL_KX_LogMessageSeq;

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

    [[nodiscard]] DDS_DomainParticipant* participant() const { return participant_; }
    [[nodiscard]] DDS_Topic* topic() const { return topic_; }
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

TEST(TypeSupport, RegistersACopyOfThePluginUnderAnyName) {
    const Node node(QEL_KX_ADMIN_StateTypeSupport_register_type);
    DDS_DomainParticipant* participant = node.participant();
    const long before = heap_faults::live_blocks();
    EXPECT_EQ(QEL_KX_ADMIN_StateTypeSupport_register_type(participant, "some::name"),
              DDS_RETCODE_OK);
    const Reports silence;
    EXPECT_EQ(QEL_KX_LogMessageTypeSupport_register_type(participant, "some::name"),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(QEL_KX_ADMIN_StateTypeSupport_unregister_type(participant, "some::name"),
              DDS_RETCODE_OK);
    EXPECT_EQ(heap_faults::live_blocks(), before);
    EXPECT_EQ(QEL_KX_ADMIN_StateTypeSupport_unregister_type(participant, "some::name"),
              DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(QEL_KX_ADMIN_StateTypeSupport_register_type(nullptr, "x"), DDS_RETCODE_ERROR);
    EXPECT_EQ(QEL_KX_ADMIN_StateTypeSupport_unregister_type(nullptr, "x"), DDS_RETCODE_ERROR);
    heap_faults::fail_allocation(1);
    EXPECT_EQ(QEL_KX_ADMIN_StateTypeSupport_register_type(participant, "x"), DDS_RETCODE_ERROR);
}

TEST(TypedEndpoints, AreNarrowedByTheTypeBehindTheirTopic) {
    const Node node(QEL_KX_ADMIN_StateTypeSupport_register_type);
    DDS_DataWriter* writer = node.writer();
    DDS_DataReader* reader = node.reader();
    ASSERT_TRUE(writer != nullptr && reader != nullptr);
    Reports reports;
    EXPECT_EQ(QEL_KX_ADMIN_StateDataWriter_narrow(writer), writer);
    EXPECT_EQ(QEL_KX_ADMIN_StateDataReader_narrow(reader), reader);
    EXPECT_EQ(QEL_KX_ADMIN_StateDataWriter_as_datawriter(writer), writer);
    EXPECT_EQ(QEL_KX_ADMIN_StateDataReader_as_datareader(reader), reader);
    EXPECT_EQ(reports.take(), Texts{});
    EXPECT_EQ(QEL_KX_LogMessageDataWriter_narrow(writer), nullptr);
    EXPECT_EQ(QEL_KX_LogMessageDataReader_narrow(reader), nullptr);
    EXPECT_EQ(QEL_KX_LogMessageDataWriter_narrow(nullptr), nullptr);
    EXPECT_EQ(QEL_KX_LogMessageDataReader_narrow(nullptr), nullptr);
    EXPECT_EQ(QEL_KX_LogMessageDataWriter_as_datawriter(nullptr), nullptr);
    EXPECT_EQ(QEL_KX_LogMessageDataReader_as_datareader(nullptr), nullptr);
    EXPECT_EQ(reports.take(), (Texts{"TDataWriter_narrow:bad parameter: wrong type writer",
                                     "TDataReader_narrow:bad parameter: wrong type reader",
                                     "TDataWriter_narrow:bad parameter: null writer",
                                     "TDataReader_narrow:bad parameter: null reader",
                                     "TDataWriter_as_datawriter:bad parameter: null writer",
                                     "TDataReader_as_datareader:bad parameter: null reader"}));
}

/// Log messages of levels 1 to 3, an instance each, from a writer to a reader.
class LogEndpoints : public testing::Test {
public:
    LogEndpoints() {
        QEL_KX_LogMessageSeq_initialize(&data_);
        DDS_SampleInfoSeq_initialize(&infos_);
        EXPECT_TRUE(writer_ != nullptr && reader_ != nullptr);
        fill(*message_);
    }
    ~LogEndpoints() override {
        QEL_KX_LogMessageSeq_finalize(&data_);
        DDS_SampleInfoSeq_finalize(&infos_);
    }

protected:
    void write_levels() {
        for (const DDS_Long level : {1, 2, 3}) {
            message_->level = level;
            ASSERT_EQ(QEL_KX_LogMessageDataWriter_write(writer_, message_.get(), &DDS_HANDLE_NIL),
                      DDS_RETCODE_OK);
        }
        ASSERT_TRUE(await_data(reader_));
    }
    /// The levels of what a call has put into the sequence, which is given back.
    std::string levels(DDS_ReturnCode_t result) {
        if (result != DDS_RETCODE_OK) {
            return "code " + std::to_string(result);
        }
        std::string text;
        for (DDS_Long i = 0; i < QEL_KX_LogMessageSeq_get_length(&data_); ++i) {
            text += std::to_string(QEL_KX_LogMessageSeq_get_reference(&data_, i)->level);
        }
        EXPECT_EQ(QEL_KX_LogMessageDataReader_return_loan(reader_, &data_, &infos_),
                  DDS_RETCODE_OK);
        return text;
    }
    DDS_ReturnCode_t take() {
        return QEL_KX_LogMessageDataReader_take(reader_, &data_, &infos_, any_number_, 3, 3, 7);
    }

    static constexpr DDS_Long any_number_ = DDS_LENGTH_UNLIMITED;
    const Node sender_{QEL_KX_LogMessageTypeSupport_register_type};
    const Node receiver_{QEL_KX_LogMessageTypeSupport_register_type};
    Writer* writer_ = QEL_KX_LogMessageDataWriter_narrow(sender_.writer());
    QEL_KX_LogMessageDataReader* reader_ = QEL_KX_LogMessageDataReader_narrow(receiver_.reader());
    Sample<QEL_KX_LogMessage> message_;
    Sequence data_{};
    DDS_SampleInfoSeq infos_{};
    Reports reports_;
};

TEST_F(LogEndpoints, HandSampleHandleAndTimestampOn) {
    using Handle = const DDS_InstanceHandle_t*;
    using Message = const QEL_KX_LogMessage*;
    const struct {
        DDS_ReturnCode_t (*plain)(Writer*, Message, Handle);
        DDS_ReturnCode_t (*timed)(Writer*, Message, Handle, const DDS_Time_t*);
        DDS_ReturnCode_t (*general)(Writer*, Message, const DDS_WriteParams_t*);
        DDS_InstanceStateMask state;
    } operations[] = {
        {QEL_KX_LogMessageDataWriter_write, QEL_KX_LogMessageDataWriter_write_w_timestamp,
         QEL_KX_LogMessageDataWriter_write_w_params, DDS_ALIVE_INSTANCE_STATE},
        {QEL_KX_LogMessageDataWriter_dispose, QEL_KX_LogMessageDataWriter_dispose_w_timestamp,
         QEL_KX_LogMessageDataWriter_dispose_w_params, DDS_NOT_ALIVE_DISPOSED_INSTANCE_STATE},
        {QEL_KX_LogMessageDataWriter_unregister_instance,
         QEL_KX_LogMessageDataWriter_unregister_instance_w_timestamp,
         QEL_KX_LogMessageDataWriter_unregister_instance_w_params,
         DDS_NOT_ALIVE_DISPOSED_INSTANCE_STATE},
    };
    const DDS_Time_t time{.sec = 1700000000, .nanosec = 500000000};
    for (const auto& operation : operations) {
        const DDS_InstanceHandle_t handle =
            QEL_KX_LogMessageDataWriter_register_instance(writer_, message_.get());
        DDS_InstanceHandle_t other = handle;
        ++other.keyHash.value[0];
        const DDS_WriteParams_t params{.handle = handle, .source_timestamp = time};
        EXPECT_EQ(operation.plain(writer_, message_.get(), &other), DDS_RETCODE_BAD_PARAMETER);
        EXPECT_EQ(operation.timed(writer_, message_.get(), &other, &time),
                  DDS_RETCODE_BAD_PARAMETER);
        reports_.take();
        EXPECT_EQ(operation.plain(writer_, message_.get(), nullptr), DDS_RETCODE_BAD_PARAMETER);
        EXPECT_EQ(operation.timed(writer_, message_.get(), &handle, nullptr),
                  DDS_RETCODE_BAD_PARAMETER);
        EXPECT_EQ(reports_.take(), (Texts{"TDataWriter_write:bad parameter: handle",
                                          "TDataWriter_write:bad parameter: timestamp"}));
        const auto expect_sample = [&](auto call, bool timed) {
            EXPECT_EQ(QEL_KX_LogMessageDataWriter_write(writer_, message_.get(), &DDS_HANDLE_NIL),
                      DDS_RETCODE_OK);
            EXPECT_TRUE(await_data(reader_));
            EXPECT_EQ(levels(take()), "300");
            ASSERT_EQ(call(), DDS_RETCODE_OK);
            ASSERT_TRUE(await_data(reader_));
            ASSERT_EQ(take(), DDS_RETCODE_OK);
            const DDS_SampleInfo& info = *DDS_SampleInfoSeq_get_reference(&infos_, 0);
            EXPECT_EQ(info.instance_state, operation.state);
            EXPECT_EQ(info.source_timestamp.sec == time.sec, timed);
            levels(DDS_RETCODE_OK);
        };
        expect_sample([&] { return operation.plain(writer_, message_.get(), &handle); }, false);
        expect_sample([&] { return operation.timed(writer_, message_.get(), &handle, &time); },
                      true);
        expect_sample([&] { return operation.general(writer_, message_.get(), &params); }, true);
    }
    const auto registered = [&](const DDS_Time_t* timestamp) {
        return QEL_KX_LogMessageDataWriter_register_instance_w_timestamp(writer_, message_.get(),
                                                                         timestamp)
            .isValid;
    };
    EXPECT_TRUE(registered(&time));
    EXPECT_FALSE(registered(nullptr));
}

TEST_F(LogEndpoints, LendSamplesWithAnInstancePerLevel) {
    ASSERT_EQ(QEL_KX_LogMessageDataWriter_write(writer_, message_.get(), &DDS_HANDLE_NIL),
              DDS_RETCODE_OK);
    ASSERT_TRUE(await_data(reader_));
    ASSERT_EQ(take(), DDS_RETCODE_OK);
    ASSERT_EQ(QEL_KX_LogMessageSeq_get_length(&data_), 1);
    EXPECT_FALSE(QEL_KX_LogMessageSeq_has_ownership(&data_));
    EXPECT_EQ(encoded(*QEL_KX_LogMessageSeq_get_reference(&data_, 0), 1), encoded(*message_, 1));
    const DDS_InstanceHandle_t handle =
        DDS_SampleInfoSeq_get_reference(&infos_, 0)->instance_handle;
    EXPECT_EQ(written(Bytes(handle.keyHash.value, handle.keyHash.value + 16)),
              written(bytes("25debdae8f9f3d85bc90521c58754447")));
    EXPECT_EQ(QEL_KX_LogMessageDataReader_return_loan(reader_, nullptr, &infos_),
              DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(levels(DDS_RETCODE_OK), "300");
    EXPECT_TRUE(QEL_KX_LogMessageSeq_has_ownership(&data_));
    EXPECT_EQ(QEL_KX_LogMessageDataReader_return_loan(reader_, &data_, &infos_), DDS_RETCODE_OK)
        << "nothing is on loan any more";
    EXPECT_EQ(take(), DDS_RETCODE_NO_DATA);

    std::strcpy(message_->category, "other");
    for (const DDS_InstanceHandle_t& same :
         {QEL_KX_LogMessageDataWriter_lookup_instance(writer_, message_.get()),
          QEL_KX_LogMessageDataReader_lookup_instance(reader_, message_.get())}) {
        EXPECT_TRUE(DDS_InstanceHandle_equals(&same, &handle));
    }
    Sample<QEL_KX_LogMessage> key;
    EXPECT_EQ(QEL_KX_LogMessageDataReader_get_key_value(reader_, key.get(), &handle),
              DDS_RETCODE_OK);
    EXPECT_EQ(key->level, 300);
    EXPECT_EQ(key->hostAndAppId.rtps_app_id, 0x0A0B0C0D);
    EXPECT_EQ(QEL_KX_LogMessageDataWriter_get_key_value(writer_, key.get(), &handle),
              DDS_RETCODE_OK);
    message_->level = 1;
    EXPECT_FALSE(QEL_KX_LogMessageDataWriter_lookup_instance(writer_, message_.get()).isValid);
    // Only the infos are on loan, so that there is nothing for the data to give up.
    DDS_SampleInfo info{};
    ASSERT_TRUE(DDS_SampleInfoSeq_loan_contiguous(&infos_, &info, 1, 1));
    EXPECT_NE(QEL_KX_LogMessageDataReader_return_loan(reader_, &data_, &infos_), DDS_RETCODE_OK);
    ASSERT_TRUE(DDS_SampleInfoSeq_unloan(&infos_));
}

TEST_F(LogEndpoints, SelectByStatesConditionOrInstance) {
    write_levels();
    DDS_ReadCondition* unread = DDS_DataReader_create_readcondition(reader_, 2, 3, 7);
    const DDS_InstanceHandle_t second = [this] {
        message_->level = 2;
        return QEL_KX_LogMessageDataReader_lookup_instance(reader_, message_.get());
    }();
    const auto read = [&](auto operation, auto... selection) {
        return levels(operation(reader_, &data_, &infos_, any_number_, selection...));
    };
    EXPECT_EQ(read(QEL_KX_LogMessageDataReader_read, 1U, 3U, 7U), "code 11") << "none was read";
    EXPECT_EQ(levels(QEL_KX_LogMessageDataReader_read(reader_, &data_, &infos_, 1, 3, 3, 7)).size(),
              1U);
    EXPECT_EQ(read(QEL_KX_LogMessageDataReader_read_w_condition, unread).size(), 2U);
    EXPECT_EQ(read(QEL_KX_LogMessageDataReader_read_instance, &second, 3U, 3U, 7U), "2");
    EXPECT_EQ(read(QEL_KX_LogMessageDataReader_take_instance_w_condition, &second, unread),
              "code 11");
    std::string walk =
        read(QEL_KX_LogMessageDataReader_read_next_instance, &DDS_HANDLE_NIL, 3U, 3U, 7U);
    EXPECT_EQ(walk.size(), 1U);
    EXPECT_EQ(levels(QEL_KX_LogMessageDataReader_read_or_takeI(reader_, &data_, &infos_,
                                                               any_number_, 3, 3, 7, 0))
                  .size(),
              3U);
    EXPECT_EQ(
        read(QEL_KX_LogMessageDataReader_take_next_instance_w_condition, &DDS_HANDLE_NIL, unread),
        "code 11");
    // Without them the untyped operation would take "no condition" and "any instance" for the wish.
    EXPECT_EQ(read(QEL_KX_LogMessageDataReader_take_w_condition, nullptr), "code 3");
    EXPECT_EQ(read(QEL_KX_LogMessageDataReader_take_next_instance, nullptr, 3U, 3U, 7U), "code 3");
    EXPECT_EQ(QEL_KX_LogMessageDataReader_take(reader_, nullptr, &infos_, 1, 1, 1, 1),
              DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(reports_.take().back(), "TDataReader_read_or_take:bad parameter: received_data");
    DDS_DataReader_delete_readcondition(reader_, unread);

    DDS_SampleInfo info{};
    EXPECT_EQ(QEL_KX_LogMessageDataReader_read_next_sample(reader_, message_.get(), &info),
              DDS_RETCODE_NO_DATA);
    EXPECT_EQ(levels(take()).size(), 3U);
    write_levels();
    EXPECT_EQ(QEL_KX_LogMessageDataReader_take_next_sample(reader_, message_.get(), &info),
              DDS_RETCODE_OK);
    EXPECT_EQ(levels(take()).size(), 2U);
    EXPECT_EQ(
        QEL_KX_LogMessageDataReader_add_sample_to_remote_writer_queue(reader_, message_.get()),
        DDS_RETCODE_UNSUPPORTED);
}

TEST_F(LogEndpoints, CopyIntoASequenceWithABufferAndReturnALoanThatItDoesNotTake) {
    ASSERT_TRUE(QEL_KX_LogMessageSeq_set_maximum(&data_, 2));
    ASSERT_TRUE(DDS_SampleInfoSeq_set_maximum(&infos_, 2));
    write_levels();
    EXPECT_EQ(levels(take()).size(), 2U);
    EXPECT_TRUE(QEL_KX_LogMessageSeq_has_ownership(&data_));
    EXPECT_EQ(levels(take()).size(), 1U);
    EXPECT_EQ(take(), DDS_RETCODE_NO_DATA);
    EXPECT_EQ(QEL_KX_LogMessageSeq_get_length(&data_), 0);

    // The untyped operation believes that the sequence has no buffer, and lends.
    write_levels();
    DDS_SampleInfoSeq_set_maximum(&infos_, 0);
    conceal_buffer = true;
    EXPECT_EQ(take(), DDS_RETCODE_ERROR);
    conceal_buffer = false;
    // With a loan outstanding the reader could not be deleted.
}

TEST(TypedEndpoints, WriteNothingThatCannotBeEncoded) {
    const Node node(QEL_KX_ADMIN_CommandRequestTypeSupport_register_type);
    auto* writer = QEL_KX_ADMIN_CommandRequestDataWriter_narrow(node.writer());
    Sample<QEL_KX_ADMIN_CommandRequest> too_many;
    ASSERT_TRUE(QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq_set_maximum(
        &too_many->command._u.categoryAndVerbosity, 6));
    set_pairs(too_many->command, 6);
    const Reports silence;
    EXPECT_EQ(QEL_KX_ADMIN_CommandRequestDataWriter_write(writer, too_many.get(), &DDS_HANDLE_NIL),
              DDS_RETCODE_ERROR);
}

TEST(TypedEndpoints, FilterRequestsByTheNamesInTheTypeCode) {
    const Node node(QEL_KX_ADMIN_CommandRequestTypeSupport_register_type);
    const Reports silence;
    const auto filtered = [&](const char* name, const char* expression) {
        DDS_StringSeq none{};
        return DDS_DomainParticipant_create_contentfilteredtopic(node.participant(), name,
                                                                 node.topic(), expression, &none);
    };
    EXPECT_NE(filtered("good", "targetHostAndAppId.rtps_host_id = 1 and command.filterLevel > 2"),
              nullptr);
    EXPECT_EQ(filtered("bad", "targetHostAndAppId.rtps_host = 1"), nullptr);
}

}  // namespace

extern "C" {
DDS_ReturnCode_t __real_DDS_DataReader_read_or_take_untypedI(DDS_DataReader* self,
                                                             const DDS_ReadSelectorI* selector,
                                                             DDS_UntypedSampleSeqI* data,
                                                             DDS_SampleInfoSeq* infos);
DDS_ReturnCode_t __wrap_DDS_DataReader_read_or_take_untypedI(DDS_DataReader* self,
                                                             const DDS_ReadSelectorI* selector,
                                                             DDS_UntypedSampleSeqI* data,
                                                             DDS_SampleInfoSeq* infos) {
    data->maximum = conceal_buffer ? 0 : data->maximum;
    return __real_DDS_DataReader_read_or_take_untypedI(self, selector, data, infos);
}
}

// Type support, and typed writers and readers between two participants of this process.
#include "tests/support/faults.hpp"
#include "tests/support/node.hpp"
#include "tests/types/sample.hpp"
#include "types/typed_reader.hpp"
#include "types/typed_writer.hpp"

namespace orvane::types {
namespace {

using test::await_data;
using test::Node;
using test::Reports;
using Texts = std::vector<std::string>;
using Log = QEL_KX_LogMessage;
using Writer = DataWriter<Log>;
using Reader = DataReader<Log>;
constexpr DDS_ReturnCode_t ok = DDS_RETCODE_OK;
constexpr DDS_ReturnCode_t bad_parameter = DDS_RETCODE_BAD_PARAMETER;

TEST(TypeSupport, RegistersACopyOfThePluginUnderAnyName) {
    using State = TypeSupport<QEL_KX_ADMIN_State>;
    const Node node;
    const Reports silence;
    const long before = test::live_blocks();
    EXPECT_EQ(State::register_type(node.participant(), "some::name"), ok);
    EXPECT_EQ(TypeSupport<Log>::register_type(node.participant(), "some::name"),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(State::unregister_type(node.participant(), "some::name"), ok);
    EXPECT_EQ(test::live_blocks(), before);
    EXPECT_EQ(State::unregister_type(node.participant(), "some::name"), bad_parameter);
    const test::Fault fault(test::heap_allocation, 1);
    EXPECT_EQ(State::register_type(node.participant(), "some::name"), DDS_RETCODE_ERROR);
}

TEST(TypedEndpoints, AreNarrowedByTheTypeBehindTheirTopic) {
    const Node node;
    DDS_DataWriter* writer = node.writer<Log>();
    DDS_DataReader* reader = node.reader<Log>();
    Reports reports;
    EXPECT_EQ(Writer::as_datawriter(Writer::narrow(writer)), writer);
    EXPECT_EQ(Reader::as_datareader(Reader::narrow(reader)), reader);
    EXPECT_EQ(reports.take(), Texts{});
    EXPECT_EQ(DataWriter<QEL_KX_ADMIN_State>::narrow(writer), nullptr);
    EXPECT_EQ(DataReader<QEL_KX_ADMIN_State>::narrow(reader), nullptr);
    EXPECT_EQ(reports.take().size(), 2U);
}

/// Log messages, an instance per level, from a writer to a reader.
class LogEndpoints : public testing::Test {
public:
    LogEndpoints() { fill(*message_); }
    ~LogEndpoints() override {
        QEL_KX_LogMessageSeq_finalize(&data_);
        DDS_SampleInfoSeq_finalize(&infos_);
    }

protected:
    void write(std::initializer_list<DDS_Long> levels) {
        for (const DDS_Long level : levels) {
            message_->level = level;
            ASSERT_EQ(Writer::write(writer_, message_.get(), &DDS_HANDLE_NIL), ok);
            ASSERT_TRUE(await_data(reader_, DDS_NOT_READ_SAMPLE_STATE));
        }
    }
    DDS_ReturnCode_t take() {
        return QEL_KX_LogMessageDataReader_take(reader_, &data_, &infos_, any_number_, 3, 3, 7);
    }
    /// The levels of what a call has put into the sequence, which is given back.
    std::string levels(DDS_ReturnCode_t result) {
        if (result != ok) {
            return "code " + std::to_string(result);
        }
        std::string text;
        for (DDS_Long i = 0; i < QEL_KX_LogMessageSeq_get_length(&data_); ++i) {
            text += std::to_string(QEL_KX_LogMessageSeq_get_reference(&data_, i)->level);
        }
        EXPECT_EQ(Reader::return_loan(reader_, &data_, &infos_), ok);
        return text;
    }

    static constexpr DDS_Long any_number_ = DDS_LENGTH_UNLIMITED;
    const Node sender_;
    const Node receiver_;
    DDS_DataWriter* writer_ = sender_.writer<Log>();
    DDS_DataReader* reader_ = receiver_.reader<Log>();
    Sample<Log> message_;
    QEL_KX_LogMessageSeq data_{};
    DDS_SampleInfoSeq infos_{};
    Reports reports_;
};

TEST_F(LogEndpoints, HandSampleHandleAndTimestampOn) {
    const struct {
        decltype(&Writer::write) plain;
        decltype(&Writer::write_w_timestamp) timed;
        decltype(&Writer::write_w_params) general;
        DDS_InstanceStateMask state;
    } operations[] = {
        {Writer::write, Writer::write_w_timestamp, Writer::write_w_params,
         DDS_ALIVE_INSTANCE_STATE},
        {Writer::dispose, Writer::dispose_w_timestamp, Writer::dispose_w_params,
         DDS_NOT_ALIVE_DISPOSED_INSTANCE_STATE},
        {Writer::unregister_instance, Writer::unregister_instance_w_timestamp,
         Writer::unregister_instance_w_params, DDS_NOT_ALIVE_DISPOSED_INSTANCE_STATE},
    };
    const DDS_Time_t time{.sec = 1700000000, .nanosec = 500000000};
    const Log* message = message_.get();
    for (const auto& operation : operations) {
        const DDS_InstanceHandle_t handle = Writer::register_instance(writer_, message);
        DDS_InstanceHandle_t other = handle;
        ++other.keyHash.value[0];
        const DDS_WriteParams_t params{.handle = handle, .source_timestamp = time};
        EXPECT_EQ(operation.plain(writer_, message, &other), bad_parameter);
        EXPECT_EQ(operation.timed(writer_, message, &other, &time), bad_parameter);
        EXPECT_EQ(operation.plain(writer_, message, nullptr), bad_parameter);
        EXPECT_EQ(operation.timed(writer_, message, &handle, nullptr), bad_parameter);
        const auto expect_sample = [&](bool timed, auto call) {
            write({300});
            EXPECT_EQ(levels(take()), "300");
            EXPECT_EQ(call(), ok);
            ASSERT_TRUE(await_data(reader_));
            const DDS_SampleInfo info = test::receive<Log>(reader_).at(0).info;
            EXPECT_EQ(info.instance_state, operation.state);
            EXPECT_EQ(info.source_timestamp.sec == time.sec, timed);
        };
        expect_sample(false, [&] { return operation.plain(writer_, message, &handle); });
        expect_sample(true, [&] { return operation.timed(writer_, message, &handle, &time); });
        expect_sample(true, [&] { return operation.general(writer_, message, &params); });
    }
    EXPECT_TRUE(Writer::register_instance_w_timestamp(writer_, message, &time).isValid);
    EXPECT_FALSE(Writer::register_instance_w_timestamp(writer_, message, nullptr).isValid);
}

TEST_F(LogEndpoints, LendSamplesWithAnInstancePerLevel) {
    write({300});
    ASSERT_EQ(take(), ok);
    EXPECT_FALSE(QEL_KX_LogMessageSeq_has_ownership(&data_));
    EXPECT_EQ(encoded(*QEL_KX_LogMessageSeq_get_reference(&data_, 0)), encoded(*message_));
    const DDS_InstanceHandle_t handle =
        DDS_SampleInfoSeq_get_reference(&infos_, 0)->instance_handle;
    EXPECT_EQ(hexadecimal(handle.keyHash.value, 16),
              hexadecimal(bytes("25debdae8f9f3d85bc90521c58754447")));
    EXPECT_EQ(Reader::return_loan(reader_, nullptr, &infos_), bad_parameter);
    EXPECT_EQ(levels(ok), "300");
    EXPECT_TRUE(QEL_KX_LogMessageSeq_has_ownership(&data_));
    EXPECT_EQ(Reader::return_loan(reader_, &data_, &infos_), ok) << "not on loan";
    EXPECT_EQ(take(), DDS_RETCODE_NO_DATA);

    std::strcpy(message_->category, "other");
    for (const DDS_InstanceHandle_t& same : {Writer::lookup_instance(writer_, message_.get()),
                                             Reader::lookup_instance(reader_, message_.get())}) {
        EXPECT_TRUE(DDS_InstanceHandle_equals(&same, &handle));
    }
    Sample<Log> key;
    EXPECT_EQ(Reader::get_key_value(reader_, key.get(), &handle), ok);
    EXPECT_EQ(std::exchange(key->level, 0), 300);
    EXPECT_EQ(Writer::get_key_value(writer_, key.get(), &handle), ok);
    EXPECT_EQ(key->level, 300);
}

TEST_F(LogEndpoints, SelectByStatesConditionOrInstance) {
    write({1, 3, 2});
    DDS_ReadCondition* unread = DDS_DataReader_create_readcondition(reader_, 2, 3, 7);
    const DDS_InstanceHandle_t second = Reader::lookup_instance(reader_, message_.get());
    const DDS_InstanceHandle_t* nil = &DDS_HANDLE_NIL;
    const auto call = [&](auto operation, auto... selection) {
        return levels(operation(reader_, &data_, &infos_, any_number_, selection...));
    };
    EXPECT_EQ(call(QEL_KX_LogMessageDataReader_read, 1U, 3U, 7U), "code 11") << "none was read";
    EXPECT_EQ(levels(Reader::read_or_take(reader_, &data_, &infos_, 1, 3, 3, 7, 0)).size(), 1U);
    EXPECT_EQ(call(QEL_KX_LogMessageDataReader_read_w_condition, unread).size(), 2U);
    EXPECT_EQ(call(QEL_KX_LogMessageDataReader_read_instance, &second, 3U, 3U, 7U), "2");
    EXPECT_EQ(call(QEL_KX_LogMessageDataReader_take_instance_w_condition, &second, unread),
              "code 11");
    EXPECT_EQ(call(QEL_KX_LogMessageDataReader_read_next_instance, nil, 3U, 3U, 7U).size(), 1U);
    EXPECT_EQ(call(Reader::read_or_take, 3U, 3U, 7U, DDS_BOOLEAN_FALSE).size(), 3U);
    EXPECT_EQ(call(QEL_KX_LogMessageDataReader_take_next_instance_w_condition, nil, unread),
              "code 11");
    // Without them the untyped operation would take "no condition" and "any instance" for the wish.
    EXPECT_EQ(call(QEL_KX_LogMessageDataReader_take_w_condition, nullptr), "code 3");
    EXPECT_EQ(call(QEL_KX_LogMessageDataReader_take_next_instance, nullptr, 3U, 3U, 7U), "code 3");
    DDS_DataReader_delete_readcondition(reader_, unread);

    DDS_SampleInfo info{};
    Log* sample = message_.get();
    EXPECT_EQ(Reader::read_next_sample(reader_, sample, &info), DDS_RETCODE_NO_DATA);
    EXPECT_EQ(levels(take()).size(), 3U);
    write({1, 2, 3});
    EXPECT_EQ(Reader::take_next_sample(reader_, sample, &info), ok);
    EXPECT_EQ(levels(take()).size(), 2U);
}

TEST_F(LogEndpoints, CopyIntoASequenceWithABufferAndReturnALoanThatItDoesNotTake) {
    ASSERT_TRUE(QEL_KX_LogMessageSeq_set_maximum(&data_, 2));
    ASSERT_TRUE(DDS_SampleInfoSeq_set_maximum(&infos_, 2));
    write({1, 2, 3});
    EXPECT_EQ(levels(take()).size(), 2U);
    EXPECT_TRUE(QEL_KX_LogMessageSeq_has_ownership(&data_));
    EXPECT_EQ(levels(take()).size(), 1U);
    EXPECT_EQ(take(), DDS_RETCODE_NO_DATA);
    EXPECT_EQ(QEL_KX_LogMessageSeq_get_length(&data_), 0);

    // The untyped operation believes that the sequence has no buffer, and lends. With a loan
    // outstanding the reader could not be deleted.
    write({1, 2, 3});
    DDS_SampleInfoSeq_set_maximum(&infos_, 0);
    const test::Stub<decltype(DDS_DataReader_read_or_take_untypedI)> conceal(
        "DDS_DataReader_read_or_take_untypedI",
        [&](DDS_DataReader* self, const DDS_ReadSelectorI* selector, DDS_UntypedSampleSeqI* data,
            DDS_SampleInfoSeq* infos) {
            data->maximum = 0;
            return conceal.real(self, selector, data, infos);
        });
    EXPECT_EQ(take(), DDS_RETCODE_ERROR);
}

}  // namespace
}  // namespace orvane::types

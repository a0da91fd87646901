// Typed writers and readers on top of untyped ones that the tests play.
#include <gtest/gtest.h>

#include "tests/platform_core/reports.hpp"
#include "tests/types/fake_endpoints.hpp"
#include "tests/types/sample.hpp"

namespace {

using Texts = std::vector<std::string>;

TEST(TypedEndpoints, AreNarrowedFromEndpointsOfTheSameTypeOnly) {
    Reports reports;
    DDS_DataWriter writer;
    DDS_DataReader reader;
    writer.type_name = reader.type_name = "QEL::KX::LogMessage";
    EXPECT_EQ(QEL_KX_LogMessageDataWriter_narrow(&writer), &writer);
    EXPECT_EQ(QEL_KX_LogMessageDataReader_narrow(&reader), &reader);
    EXPECT_EQ(QEL_KX_LogMessageDataWriter_as_datawriter(&writer), &writer);
    EXPECT_EQ(QEL_KX_LogMessageDataReader_as_datareader(&reader), &reader);
    EXPECT_EQ(reports.take(), Texts{});

    writer.type_name = reader.type_name = "QEL::KX::ADMIN::State";
    EXPECT_EQ(QEL_KX_LogMessageDataWriter_narrow(&writer), nullptr);
    EXPECT_EQ(QEL_KX_LogMessageDataReader_narrow(&reader), nullptr);
    EXPECT_EQ(QEL_KX_ADMIN_StateDataWriter_narrow(&writer), &writer);
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

TEST(TypedWriter, HandsSampleHandleAndTimestampOn) {
    using Write = DDS_ReturnCode_t (*)(DDS_DataWriter*, const QEL_KX_LogMessage*,
                                       const DDS_InstanceHandle_t*);
    using Timed = DDS_ReturnCode_t (*)(DDS_DataWriter*, const QEL_KX_LogMessage*,
                                       const DDS_InstanceHandle_t*, const DDS_Time_t*);
    using General =
        DDS_ReturnCode_t (*)(DDS_DataWriter*, const QEL_KX_LogMessage*, const DDS_WriteParams_t*);
    const struct {
        const char* call;
        Write write;
        Timed timed;
        General general;
    } operations[] = {
        {"write", QEL_KX_LogMessageDataWriter_write, QEL_KX_LogMessageDataWriter_write_w_timestamp,
         QEL_KX_LogMessageDataWriter_write_w_params},
        {"dispose", QEL_KX_LogMessageDataWriter_dispose,
         QEL_KX_LogMessageDataWriter_dispose_w_timestamp,
         QEL_KX_LogMessageDataWriter_dispose_w_params},
        {"unregister_instance", QEL_KX_LogMessageDataWriter_unregister_instance,
         QEL_KX_LogMessageDataWriter_unregister_instance_w_timestamp,
         QEL_KX_LogMessageDataWriter_unregister_instance_w_params},
    };
    const QEL_KX_LogMessage sample{};
    const DDS_InstanceHandle_t handle{.keyHash = {.value = {1, 2}, .length = 16}, .isValid = 1};
    const DDS_Time_t time{.sec = 5, .nanosec = 6};
    const DDS_WriteParams_t params{.handle = handle, .source_timestamp = time};
    for (const auto& operation : operations) {
        Reports reports;
        DDS_DataWriter writer;
        writer.result = DDS_RETCODE_TIMEOUT;
        EXPECT_EQ(operation.write(&writer, &sample, &handle), DDS_RETCODE_TIMEOUT);
        EXPECT_EQ(writer.call, operation.call);
        EXPECT_EQ(writer.sample, &sample);
        EXPECT_EQ(writer.params.handle.keyHash.value[1], 2);
        EXPECT_EQ(writer.params.source_timestamp.sec, DDS_TIME_INVALID.sec);
        EXPECT_EQ(writer.params.source_timestamp.nanosec, DDS_TIME_INVALID.nanosec);
        EXPECT_EQ(operation.timed(&writer, &sample, &DDS_HANDLE_NIL, &time), DDS_RETCODE_TIMEOUT);
        EXPECT_EQ(writer.params.handle.isValid, 0);
        EXPECT_EQ(writer.params.source_timestamp.nanosec, 6U);
        writer.params = {};
        EXPECT_EQ(operation.general(&writer, &sample, &params), DDS_RETCODE_TIMEOUT);
        EXPECT_EQ(writer.params.source_timestamp.sec, 5);

        writer.call = "";
        EXPECT_EQ(operation.write(&writer, &sample, nullptr), DDS_RETCODE_BAD_PARAMETER);
        EXPECT_EQ(operation.timed(&writer, &sample, &handle, nullptr), DDS_RETCODE_BAD_PARAMETER);
        EXPECT_EQ(writer.call, "");
        EXPECT_EQ(reports.take(), (Texts{"TDataWriter_write:bad parameter: handle",
                                         "TDataWriter_write:bad parameter: timestamp"}));
    }
}

TEST(TypedWriter, KnowsInstances) {
    Reports reports;
    DDS_DataWriter writer;
    QEL_KX_ADMIN_State sample{};
    const DDS_Time_t time{.sec = 5, .nanosec = 6};
    EXPECT_EQ(QEL_KX_ADMIN_StateDataWriter_register_instance(&writer, &sample).isValid, 1);
    EXPECT_EQ(writer.params.source_timestamp.sec, -1);
    QEL_KX_ADMIN_StateDataWriter_register_instance_w_timestamp(&writer, &sample, &time);
    EXPECT_EQ(writer.params.source_timestamp.sec, 5);
    EXPECT_EQ(writer.call, "register_instance");
    EXPECT_EQ(QEL_KX_ADMIN_StateDataWriter_register_instance_w_timestamp(&writer, &sample, nullptr)
                  .isValid,
              0);
    EXPECT_EQ(QEL_KX_ADMIN_StateDataWriter_lookup_instance(&writer, &sample).isValid, 1);
    EXPECT_EQ(writer.call, "lookup_instance");
    EXPECT_EQ(QEL_KX_ADMIN_StateDataWriter_get_key_value(&writer, &sample, &DDS_HANDLE_NIL),
              DDS_RETCODE_OK);
    EXPECT_EQ(writer.call, "get_key_value");
    EXPECT_EQ(reports.take(), (Texts{"TDataWriter_write:bad parameter: timestamp"}));
}

class TypedReader : public testing::Test {
protected:
    DDS_ReturnCode_t take() {
        return QEL_KX_LogMessageDataReader_take(&reader, &data, &infos, 9, 1, 2, 4);
    }
    DDS_ReturnCode_t return_loan() {
        return QEL_KX_LogMessageDataReader_return_loan(&reader, &data, &infos);
    }

    DDS_DataReader reader;
    QEL_KX_LogMessageSeq data{};
    DDS_SampleInfoSeq infos{};
    Reports reports;
};

TEST_F(TypedReader, LendsSamplesUntilTheyAreReturned) {
    Sample<QEL_KX_LogMessage> first;
    Sample<QEL_KX_LogMessage> second;
    fill(*second);
    reader.samples = {first.get(), second.get()};
    ASSERT_EQ(take(), DDS_RETCODE_OK);
    EXPECT_EQ(reader.data.maximum, 0);
    EXPECT_EQ(reader.data.owned, 1);
    EXPECT_EQ(reader.data.elementSize, sizeof(QEL_KX_LogMessage));
    EXPECT_EQ(QEL_KX_LogMessageSeq_get_length(&data), 2);
    EXPECT_EQ(QEL_KX_LogMessageSeq_get_maximum(&data), 2);
    EXPECT_EQ(QEL_KX_LogMessageSeq_get_reference(&data, 1), second.get());

    reader.return_result = DDS_RETCODE_PRECONDITION_NOT_MET;
    EXPECT_EQ(return_loan(), DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(QEL_KX_LogMessageSeq_get_length(&data), 2);
    reader.return_result = DDS_RETCODE_OK;
    EXPECT_EQ(return_loan(), DDS_RETCODE_OK);
    EXPECT_EQ(reader.data.loanedSamples, reader.samples.data());
    EXPECT_EQ(reader.data.count, 2);
    EXPECT_TRUE(QEL_KX_LogMessageSeq_has_ownership(&data));
    EXPECT_EQ(QEL_KX_LogMessageSeq_get_length(&data), 0);
    EXPECT_EQ(return_loan(), DDS_RETCODE_OK);
    EXPECT_EQ(reader.loans_returned, 2);
    EXPECT_EQ(reports.take(), Texts{});
}

TEST_F(TypedReader, CopiesIntoASequenceWithABuffer) {
    ASSERT_TRUE(QEL_KX_LogMessageSeq_set_maximum(&data, 4));
    reader.copies = true;
    reader.samples.resize(3);
    EXPECT_EQ(take(), DDS_RETCODE_OK);
    EXPECT_EQ(reader.data.maximum, 4);
    EXPECT_EQ(reader.data.contiguousBuffer, data.contiguousBuffer);
    EXPECT_EQ(QEL_KX_LogMessageSeq_get_length(&data), 3);
    EXPECT_EQ(return_loan(), DDS_RETCODE_OK);
    EXPECT_EQ(reader.loans_returned, 0);

    reader.result = DDS_RETCODE_NO_DATA;
    EXPECT_EQ(take(), DDS_RETCODE_NO_DATA);
    EXPECT_EQ(QEL_KX_LogMessageSeq_get_length(&data), 0);
    reader.result = DDS_RETCODE_OK;
    reader.samples.resize(5);
    EXPECT_EQ(take(), DDS_RETCODE_ERROR) << "more than fit";
    reader.result = DDS_RETCODE_NOT_ENABLED;
    EXPECT_EQ(take(), DDS_RETCODE_NOT_ENABLED);
    QEL_KX_LogMessageSeq_finalize(&data);
}

TEST_F(TypedReader, ReturnsALoanThatTheSequenceDoesNotTake) {
    ASSERT_TRUE(QEL_KX_LogMessageSeq_set_maximum(&data, 1));
    Sample<QEL_KX_LogMessage> sample;
    reader.samples = {sample.get()};
    EXPECT_EQ(take(), DDS_RETCODE_ERROR);
    EXPECT_EQ(reader.loans_returned, 1);
    QEL_KX_LogMessageSeq_finalize(&data);
}

TEST_F(TypedReader, TellsWhenTheSequenceKeepsWhatWasReturned) {
    // Only the infos are on loan, so that there is nothing for the data to give up.
    DDS_SampleInfo info{};
    ASSERT_TRUE(DDS_SampleInfoSeq_loan_contiguous(&infos, &info, 1, 1));
    EXPECT_EQ(return_loan(), DDS_RETCODE_ERROR);
    EXPECT_EQ(reports.take().back(), "TDataReader_return_loan:unloan sequence failed");
    ASSERT_TRUE(DDS_SampleInfoSeq_unloan(&infos));
}

TEST_F(TypedReader, NeedsADataSequence) {
    EXPECT_EQ(QEL_KX_LogMessageDataReader_take(&reader, nullptr, &infos, 1, 1, 1, 1),
              DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(QEL_KX_LogMessageDataReader_return_loan(&reader, nullptr, &infos),
              DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(reader.call, "");
    EXPECT_EQ(reports.take(), (Texts{"TDataReader_read_or_take:bad parameter: received_data",
                                     "TDataReader_return_loan:bad parameter: received_data"}));
}

TEST_F(TypedReader, SelectsByStatesConditionOrInstance) {
    auto* condition = reinterpret_cast<DDS_ReadCondition*>(&reader);
    const DDS_InstanceHandle_t handle{.keyHash = {.value = {1}, .length = 16}, .isValid = 1};
    DDS_ReadSelectorI& selector = reader.selector;
    reader.result = DDS_RETCODE_NO_DATA;

    QEL_KX_LogMessageDataReader_read(&reader, &data, &infos, 9, 1, 2, 4);
    EXPECT_EQ(selector.sample_states, 1U);
    EXPECT_EQ(selector.view_states, 2U);
    EXPECT_EQ(selector.instance_states, 4U);
    EXPECT_EQ(selector.max_samples, 9);
    EXPECT_EQ(selector.condition, nullptr);
    EXPECT_EQ(selector.instance, nullptr);
    EXPECT_EQ(selector.next_instance, 0);
    EXPECT_EQ(selector.take, 0);
    QEL_KX_LogMessageDataReader_take(&reader, &data, &infos, 9, 1, 2, 4);
    EXPECT_EQ(selector.take, 1);
    QEL_KX_LogMessageDataReader_read_or_takeI(&reader, &data, &infos, 9, 1, 2, 4, 0);
    EXPECT_EQ(selector.take, 0);
    QEL_KX_LogMessageDataReader_take_w_condition(&reader, &data, &infos, 8, condition);
    EXPECT_EQ(selector.condition, condition);
    EXPECT_EQ(selector.instance, nullptr);
    EXPECT_EQ(selector.max_samples, 8);
    EXPECT_EQ(selector.take, 1);
    QEL_KX_LogMessageDataReader_read_instance(&reader, &data, &infos, 9, &handle, 1, 2, 4);
    EXPECT_EQ(selector.instance, &handle);
    EXPECT_EQ(selector.view_states, 2U);
    EXPECT_EQ(selector.next_instance, 0);
    QEL_KX_LogMessageDataReader_take_instance_w_condition(&reader, &data, &infos, 9, &handle,
                                                          condition);
    EXPECT_EQ(selector.instance, &handle);
    EXPECT_EQ(selector.condition, condition);
    QEL_KX_LogMessageDataReader_read_next_instance(&reader, &data, &infos, 9, &DDS_HANDLE_NIL, 1, 2,
                                                   4);
    EXPECT_EQ(selector.instance, &DDS_HANDLE_NIL);
    EXPECT_EQ(selector.next_instance, 1);
    QEL_KX_LogMessageDataReader_take_next_instance_w_condition(&reader, &data, &infos, 9, &handle,
                                                               condition);
    EXPECT_EQ(selector.next_instance, 1);
    EXPECT_EQ(selector.condition, condition);
    EXPECT_EQ(reports.take(), Texts{});

    // Without them the untyped operation would take "no condition" and "any instance" for the wish.
    reader.call = "";
    EXPECT_EQ(QEL_KX_LogMessageDataReader_take_w_condition(&reader, &data, &infos, 9, nullptr),
              DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(
        QEL_KX_LogMessageDataReader_take_next_instance(&reader, &data, &infos, 9, nullptr, 1, 2, 4),
        DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(reader.call, "");
}

TEST_F(TypedReader, ForwardsTheRest) {
    QEL_KX_LogMessage sample{};
    DDS_SampleInfo info{};
    reader.result = DDS_RETCODE_NO_DATA;
    EXPECT_EQ(QEL_KX_LogMessageDataReader_read_next_sample(&reader, &sample, &info),
              DDS_RETCODE_NO_DATA);
    EXPECT_EQ(reader.call, "read_next_sample");
    EXPECT_EQ(QEL_KX_LogMessageDataReader_take_next_sample(&reader, &sample, &info),
              DDS_RETCODE_NO_DATA);
    EXPECT_EQ(reader.call, "take_next_sample");
    EXPECT_EQ(QEL_KX_LogMessageDataReader_get_key_value(&reader, &sample, &DDS_HANDLE_NIL),
              DDS_RETCODE_NO_DATA);
    EXPECT_EQ(reader.call, "get_key_value");
    EXPECT_EQ(QEL_KX_LogMessageDataReader_lookup_instance(&reader, &sample).isValid, 1);
    EXPECT_EQ(QEL_KX_LogMessageDataReader_add_sample_to_remote_writer_queue(&reader, &sample),
              DDS_RETCODE_UNSUPPORTED);
}

}  // namespace

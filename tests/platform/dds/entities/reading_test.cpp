#include <cstring>

#include <gtest/gtest.h>

#include "tests/platform/dds/entities/probe_node.hpp"
#include "tests/support/reports.hpp"

namespace {

/// A reader that holds five samples of instance 1, with the values 1 to 5.
class Reading : public testing::Test {
protected:
    Reading() {
        DDS_DataWriter* writer = node_.writer();
        reader_ = node_.reader();
        for (DDS_Long value = 1; value <= 5; ++value) {
            EXPECT_EQ(write(writer, {1, value}), DDS_RETCODE_OK);
        }
    }

    ProbeNode node_;
    DDS_DataReader* reader_;
};

DDS_ReadSelectorI selector(DDS_Boolean take, DDS_Long max_samples = DDS_LENGTH_UNLIMITED,
                           DDS_SampleStateMask states = DDS_ANY_SAMPLE_STATE) {
    DDS_ReadSelectorI result = take_anything;
    result.take = take;
    result.max_samples = max_samples;
    result.sample_states = states;
    return result;
}

TEST_F(Reading, ReadingKeepsSamplesAndMarksThemAndTakingRemovesThem) {
    EXPECT_EQ(summary(receive(reader_, selector(0, 2))), "1:1 1:2");
    EXPECT_EQ(summary(receive(reader_, selector(0, -1, DDS_NOT_READ_SAMPLE_STATE))), "1:3 1:4 1:5");
    EXPECT_EQ(summary(receive(reader_, selector(1, 3))), "1:1 1:2 1:3");
    EXPECT_EQ(summary(receive(reader_, selector(1, -1, DDS_NOT_READ_SAMPLE_STATE))), "");
    EXPECT_EQ(summary(receive(reader_, selector(1, -1, DDS_READ_SAMPLE_STATE))), "1:4 1:5");
    ProbeSeq sequence;
    EXPECT_EQ(sequence.receive(reader_, take_anything), DDS_RETCODE_NO_DATA);
}

TEST_F(Reading, SequencesWithMemoryGetCopiesUpToTheirMaximum) {
    ProbeSeq sequence(3);
    ASSERT_EQ(sequence.receive(reader_, take_anything), DDS_RETCODE_OK);
    EXPECT_EQ(sequence.data.isLoan, 0);
    EXPECT_EQ(summary(sequence.content()), "1:1 1:2 1:3");
    EXPECT_EQ(DDS_SampleInfoSeq_has_ownership(&sequence.infos), 1);
    ASSERT_EQ(sequence.receive(reader_, take_anything), DDS_RETCODE_OK);
    EXPECT_EQ(summary(sequence.content()), "1:4 1:5");
    EXPECT_EQ(sequence.receive(reader_, take_anything), DDS_RETCODE_NO_DATA);
    EXPECT_EQ(DDS_SampleInfoSeq_get_length(&sequence.infos), 0);
}

TEST_F(Reading, SequencesThatCannotTakeTheResultAreRefusedAndNothingIsTaken) {
    const struct {
        const char* what;
        DDS_Long maximum;
        DDS_Long max_samples;
        std::function<void(ProbeSeq&)> spoil;
        DDS_ReturnCode_t expected;
    } cases[] = {
        {"more samples than room", 2, 3, nullptr, DDS_RETCODE_PRECONDITION_NOT_MET},
        {"no samples", 0, 0, nullptr, DDS_RETCODE_BAD_PARAMETER},
        {"a negative number of samples", 0, -2, nullptr, DDS_RETCODE_BAD_PARAMETER},
        {"different maximum", 2, -1,
         [](ProbeSeq& sequence) { DDS_SampleInfoSeq_set_maximum(&sequence.infos, 3); },
         DDS_RETCODE_PRECONDITION_NOT_MET},
        {"different length", 2, -1,
         [](ProbeSeq& sequence) { DDS_SampleInfoSeq_set_length(&sequence.infos, 1); },
         DDS_RETCODE_PRECONDITION_NOT_MET},
        {"different ownership", 2, -1, [](ProbeSeq& sequence) { sequence.data.owned = 0; },
         DDS_RETCODE_PRECONDITION_NOT_MET},
        {"no memory behind a maximum", 2, -1,
         [](ProbeSeq& sequence) { sequence.data.contiguousBuffer = nullptr; },
         DDS_RETCODE_BAD_PARAMETER},
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

TEST_F(Reading, ALoanStaysWhatItWasUntilItIsReturned) {
    ProbeSeq early;
    ProbeSeq late;
    ASSERT_EQ(early.receive(reader_, selector(1, 2)), DDS_RETCODE_OK);
    ASSERT_EQ(late.receive(reader_, selector(1, 2)), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_SampleInfoSeq_has_ownership(&early.infos), 0);
    EXPECT_EQ(summary(early.content()), "1:1 1:2");
    EXPECT_EQ(summary(late.content()), "1:3 1:4");

    EXPECT_EQ(early.receive(reader_, selector(1)), DDS_RETCODE_PRECONDITION_NOT_MET)
        << "still on loan";
    EXPECT_EQ(DDS_Subscriber_delete_datareader(node_.subscriber, reader_),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(DDS_Subscriber_delete_contained_entities(node_.subscriber),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(DDS_DomainParticipant_delete_contained_entities(node_.participant),
              DDS_RETCODE_PRECONDITION_NOT_MET);

    EXPECT_EQ(early.return_loan(reader_), DDS_RETCODE_OK);
    EXPECT_EQ(summary(late.content()), "1:3 1:4");
    EXPECT_EQ(DDS_SampleInfoSeq_has_ownership(&early.infos), 1);
    EXPECT_EQ(late.return_loan(reader_), DDS_RETCODE_OK);
    EXPECT_EQ(summary(receive(reader_)), "1:5");
}

TEST_F(Reading, OnlyTheReaderThatLentSamplesTakesThemBackAndOnlyOnceAndWhole) {
    DDS_DataReader* other = node_.reader();
    ProbeSeq first;
    ProbeSeq second;
    ASSERT_EQ(first.receive(reader_, selector(1, 2)), DDS_RETCODE_OK);
    ASSERT_EQ(second.receive(reader_, selector(1, 2)), DDS_RETCODE_OK);
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
    for (const auto& one : cases) {
        EXPECT_EQ(
            DDS_DataReader_return_loan_untypedI(one.reader, one.samples, one.count, one.infos),
            DDS_RETCODE_PRECONDITION_NOT_MET)
            << one.what;
    }
    EXPECT_EQ(first.return_loan(reader_), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_DataReader_return_loan_untypedI(reader_, lent, 2, &first.infos),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(second.return_loan(reader_), DDS_RETCODE_OK);
}

TEST_F(Reading, TheNextSampleIsTheFirstThatWasNotRead) {
    Probe probe;
    DDS_SampleInfo info{};
    for (const DDS_Long value : {1, 2}) {
        ASSERT_EQ(DDS_DataReader_read_or_take_next_sample_untypedI(reader_, &probe, &info, 0),
                  DDS_RETCODE_OK);
        EXPECT_EQ(probe.value, value);
    }
    ASSERT_EQ(DDS_DataReader_read_or_take_next_sample_untypedI(reader_, &probe, &info, 1),
              DDS_RETCODE_OK);
    EXPECT_EQ(probe.value, 3);
    EXPECT_EQ(summary(receive(reader_)), "1:1 1:2 1:4 1:5");
    EXPECT_EQ(DDS_DataReader_read_or_take_next_sample_untypedI(reader_, &probe, &info, 1),
              DDS_RETCODE_NO_DATA);
    EXPECT_EQ(DDS_DataReader_add_sample_to_remote_writer_queue_untypedI(reader_, &probe),
              DDS_RETCODE_UNSUPPORTED);
}

TEST_F(Reading, AConditionSelectsByItsOwnStates) {
    DDS_DataReader* other = node_.reader();
    DDS_ReadCondition* unread = DDS_DataReader_create_readcondition(
        reader_, DDS_NOT_READ_SAMPLE_STATE, DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE);
    DDS_ReadSelectorI by_condition = selector(0, 2);
    by_condition.sample_states = DDS_READ_SAMPLE_STATE;
    by_condition.condition = unread;
    EXPECT_EQ(summary(receive(reader_, by_condition)), "1:1 1:2");
    EXPECT_EQ(summary(receive(reader_, by_condition)), "1:3 1:4");
    ProbeSeq sequence;
    EXPECT_EQ(sequence.receive(other, by_condition), DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(DDS_DataReader_delete_readcondition(other, unread), DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(DDS_Subscriber_delete_datareader(node_.subscriber, reader_),
              DDS_RETCODE_PRECONDITION_NOT_MET)
        << "a read condition is outstanding";
    EXPECT_EQ(DDS_DataReader_delete_readcondition(reader_, unread), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_Subscriber_delete_datareader(node_.subscriber, reader_), DDS_RETCODE_OK);
}

}  // namespace

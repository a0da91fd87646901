#include <functional>
#include <set>

#include <gtest/gtest.h>

#include "tests/platform/dds/entities/probe_node.hpp"

namespace {

/// A reader that holds five samples of instance 1, with the values 1 to 5.
class Reading : public testing::Test {
protected:
    Reading() {
        DDS_DataWriter* writer = node_.writer();
        for (DDS_Long value = 1; value <= 5; ++value) {
            EXPECT_EQ(write(writer, 1, value), ok);
        }
    }

    ProbeNode node_;
    DDS_DataReader* reader_ = node_.reader();
};

TEST_F(Reading, ReadingKeepsSamplesAndMarksThemAndTakingRemovesThem) {
    const struct {
        DDS_Boolean take;
        DDS_Long max_samples;
        DDS_SampleStateMask states;
        const char* expected;
    } cases[] = {
        {0, 2, DDS_ANY_SAMPLE_STATE, "1:1 1:2"},
        {0, -1, DDS_NOT_READ_SAMPLE_STATE, "1:3 1:4 1:5"},
        {1, 3, DDS_ANY_SAMPLE_STATE, "1:1 1:2 1:3"},
        {1, -1, DDS_NOT_READ_SAMPLE_STATE, ""},
        {1, -1, DDS_READ_SAMPLE_STATE, "1:4 1:5"},
        {1, -1, DDS_ANY_SAMPLE_STATE, ""},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(summary(receive(reader_, selector(one.take, one.max_samples, one.states))),
                  one.expected);
    }
}

TEST_F(Reading, SamplesThatCameBackAreLentAgain) {
    std::set<void*> lent;
    for (int round = 0; round < 3; ++round) {
        ProbeSeq loan;
        ASSERT_EQ(loan.receive(reader_, selector(0)), ok);
        lent.insert(loan.data.loanedSamples, loan.data.loanedSamples + loan.data.count);
        EXPECT_EQ(loan.content()[0].info.sample_rank, 4);
        ASSERT_EQ(loan.return_loan(reader_), ok);
    }
    EXPECT_EQ(lent.size(), 5U);
}

TEST_F(Reading, SequencesWithMemoryGetCopiesUpToTheirMaximum) {
    ProbeSeq sequence(3);
    for (const char* expected : {"1:1 1:2 1:3", "1:4 1:5"}) {
        ASSERT_EQ(sequence.receive(reader_), ok);
        EXPECT_EQ(sequence.data.isLoan, 0);
        EXPECT_EQ(DDS_SampleInfoSeq_has_ownership(&sequence.infos), 1);
        EXPECT_EQ(summary(sequence.content()), expected);
    }
    EXPECT_EQ(sequence.receive(reader_), no_data);
    EXPECT_EQ(DDS_SampleInfoSeq_get_length(&sequence.infos), 0);
}

TEST_F(Reading, SequencesThatCannotTakeTheResultAreRefusedAndNothingIsTaken) {
    const struct {
        const char* what;
        DDS_Long maximum;
        DDS_Long max_samples;
        DDS_ReturnCode_t expected;
        std::function<void(ProbeSeq&)> spoil = nullptr;
    } cases[] = {
        {"more samples than room", 2, 3, refused},
        {"no samples", 0, 0, bad_parameter},
        {"a negative number of samples", 0, -2, bad_parameter},
        {"different maximum", 2, -1, refused,
         [](ProbeSeq& sequence) { DDS_SampleInfoSeq_set_maximum(&sequence.infos, 3); }},
        {"different length", 2, -1, refused,
         [](ProbeSeq& sequence) { DDS_SampleInfoSeq_set_length(&sequence.infos, 1); }},
        {"different ownership", 2, -1, refused,
         [](ProbeSeq& sequence) { sequence.data.owned = 0; }},
        {"no memory behind a maximum", 2, -1, bad_parameter,
         [](ProbeSeq& sequence) { sequence.data.contiguousBuffer = nullptr; }},
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
    ASSERT_EQ(early.receive(reader_, selector(1, 2)), ok);
    ASSERT_EQ(late.receive(reader_, selector(1, 2)), ok);
    EXPECT_EQ(DDS_SampleInfoSeq_has_ownership(&early.infos), 0);
    EXPECT_EQ(summary(early.content()), "1:1 1:2");
    EXPECT_EQ(summary(late.content()), "1:3 1:4");

    EXPECT_EQ(early.receive(reader_), refused) << "still on loan";
    EXPECT_EQ(node_.remove(reader_), refused);
    EXPECT_EQ(DDS_Subscriber_delete_contained_entities(node_.subscriber()), refused);
    EXPECT_EQ(DDS_DomainParticipant_delete_contained_entities(node_.participant()), refused);

    EXPECT_EQ(early.return_loan(reader_), ok);
    EXPECT_EQ(summary(late.content()), "1:3 1:4");
    EXPECT_EQ(DDS_SampleInfoSeq_has_ownership(&early.infos), 1);
    EXPECT_EQ(late.return_loan(reader_), ok);
    EXPECT_EQ(summary(receive(reader_)), "1:5");
}

TEST_F(Reading, OnlyTheReaderThatLentSamplesTakesThemBackAndOnlyOnceAndWhole) {
    DDS_DataReader* other = node_.reader();
    ProbeSeq first;
    ProbeSeq second;
    ASSERT_EQ(first.receive(reader_, selector(1, 2)), ok);
    ASSERT_EQ(second.receive(reader_, selector(1, 2)), ok);
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
    for (const auto& [what, reader, samples, count, infos] : cases) {
        EXPECT_EQ(DDS_DataReader_return_loan_untypedI(reader, samples, count, infos), refused)
            << what;
    }
    EXPECT_EQ(first.return_loan(reader_), ok);
    EXPECT_EQ(DDS_DataReader_return_loan_untypedI(reader_, lent, 2, &first.infos), refused);
    EXPECT_EQ(second.return_loan(reader_), ok);
}

TEST_F(Reading, TheNextSampleIsTheFirstThatWasNotRead) {
    Probe probe;
    DDS_SampleInfo info{};
    for (const DDS_Long value : {1, 2, 3}) {
        ASSERT_EQ(DDS_DataReader_read_or_take_next_sample_untypedI(reader_, &probe, &info,
                                                                   value == 3 ? 1 : 0),
                  ok);
        EXPECT_EQ(probe.value(), value);
    }
    EXPECT_EQ(summary(receive(reader_)), "1:1 1:2 1:4 1:5");
    EXPECT_EQ(DDS_DataReader_read_or_take_next_sample_untypedI(reader_, &probe, &info, 1), no_data);
    EXPECT_EQ(DDS_DataReader_add_sample_to_remote_writer_queue_untypedI(reader_, &probe),
              DDS_RETCODE_UNSUPPORTED);
}

TEST_F(Reading, AConditionSelectsByItsOwnStates) {
    DDS_DataReader* other = node_.reader();
    DDS_ReadCondition* unread = DDS_DataReader_create_readcondition(
        reader_, DDS_NOT_READ_SAMPLE_STATE, DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE);
    DDS_ReadSelectorI by_condition = selector(0, 2, DDS_READ_SAMPLE_STATE);
    by_condition.condition = unread;
    EXPECT_EQ(summary(receive(reader_, by_condition)), "1:1 1:2");
    EXPECT_EQ(summary(receive(reader_, by_condition)), "1:3 1:4");
    EXPECT_EQ(ProbeSeq().receive(other, by_condition), refused);
    EXPECT_EQ(DDS_DataReader_delete_readcondition(other, unread), refused);
    EXPECT_EQ(node_.remove(reader_), refused) << "a read condition is outstanding";
    EXPECT_EQ(DDS_DataReader_delete_readcondition(reader_, unread), ok);
    EXPECT_EQ(node_.remove(reader_), ok);
}

}  // namespace

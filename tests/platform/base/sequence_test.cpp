#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "pexa/sequence.h"
#include "pexa/string.h"
#include "tests/support/faults.hpp"
#include "tests/support/text.hpp"

namespace {

using Texts = std::vector<std::string>;

// Sequences in the states that the rules tell apart.
class SequenceTest : public testing::Test {
protected:
    SequenceTest() {
        DDS_LongSeq_set_maximum(&four_, 4);
        DDS_LongSeq_from_array(&four_, numbers_, 3);
        DDS_LongSeq_loan_contiguous(&loan_, numbers_, 1, 2);
        DDS_LongSeq_loan_discontiguous(&pointers_, number_pointers_, 2, 3);
        reports_.take();
    }
    ~SequenceTest() override {
        DDS_LongSeq_finalize(&empty_);
        DDS_LongSeq_finalize(&four_);
    }

    orvane::test::Reports reports_;
    DDS_LongSeq empty_{};
    DDS_LongSeq four_{};
    DDS_LongSeq loan_{};
    DDS_LongSeq pointers_{};
    DDS_Long numbers_[3] = {10, 20, 30};
    DDS_Long* number_pointers_[3] = {&numbers_[2], &numbers_[0], nullptr};
};

TEST_F(SequenceTest, AnyRecordWithoutTheMarkerIsAnEmptyOwnedSequence) {
    DDS_LongSeq garbage;
    std::memset(&garbage, 0x5a, sizeof garbage);
    EXPECT_EQ(DDS_LongSeq_copy(&four_, &garbage), &four_);
    EXPECT_EQ(DDS_LongSeq_get_length(&four_), 0);
    std::memset(&garbage, 0x5a, sizeof garbage);
    EXPECT_EQ(DDS_LongSeq_get_length(&garbage), 0);
    EXPECT_EQ(garbage.sequenceInit, 29508);
    EXPECT_EQ(garbage.owned, 1);
    EXPECT_EQ(DDS_LongSeq_get_maximum(&garbage), 0);
    EXPECT_EQ(garbage.contiguousBuffer, nullptr);
    EXPECT_EQ(garbage.elementAllocationParams.allocate_memory, 1);
    EXPECT_EQ(garbage.elementDeallocationParams.delete_pointers, 1);
    EXPECT_EQ(DDS_LongSeq_finalize(&garbage), 1);
    EXPECT_EQ(reports_.take(), Texts{});
}

TEST_F(SequenceTest, NothingIsDoneToASequenceThatIsNotThere) {
    // With zeros for all other arguments: a sequence that is missing is the first thing to be
    // found.
    const auto expect_refusal = [this]<class Result, class Self, class... Arguments>(
                                    const char* name, Result (*call)(Self*, Arguments...)) {
        EXPECT_FALSE(call(nullptr, Arguments{}...)) << name;
        EXPECT_EQ(reports_.take(), Texts{std::string(name) + ":bad parameter: self"});
    };
#define NULL_CALL(operation) [&] { expect_refusal(#operation, operation); }
    const std::function<void()> calls[] = {
#include "null_calls.inc"
    };
#undef NULL_CALL
    for (const auto& call : calls) {
        call();
    }
}

TEST_F(SequenceTest, ARefusalIsReportedAndChangesNothing) {
    EXPECT_FALSE(DDS_LongSeq_set_maximum(&loan_, 5));
    EXPECT_EQ(reports_.take(),
              Texts{"DDS_LongSeq_set_maximum:assertion failed: buffer must not be loaned"});
    EXPECT_FALSE(DDS_LongSeq_set_maximum(&four_, -1));
    EXPECT_FALSE(DDS_LongSeq_set_length(&four_, 5));
    EXPECT_FALSE(DDS_LongSeq_ensure_length(&loan_, 3, 3));
    EXPECT_FALSE(DDS_LongSeq_ensure_length(&four_, 5, 4));
    EXPECT_FALSE(DDS_LongSeq_get_reference(&four_, 3));
    EXPECT_FALSE(DDS_LongSeq_copy(&four_, nullptr));
    EXPECT_FALSE(DDS_LongSeq_copy_no_alloc(&loan_, &four_));
    EXPECT_FALSE(DDS_LongSeq_copy_no_alloc(&empty_, &four_));
    EXPECT_FALSE(DDS_LongSeq_loan_contiguous(&four_, numbers_, 1, 1));
    EXPECT_FALSE(DDS_LongSeq_loan_contiguous(&empty_, numbers_, -1, 1));
    EXPECT_FALSE(DDS_LongSeq_loan_contiguous(&empty_, numbers_, 2, 1));
    EXPECT_FALSE(DDS_LongSeq_loan_discontiguous(&empty_, nullptr, 0, 1));
    EXPECT_FALSE(DDS_LongSeq_unloan(&four_));
    EXPECT_FALSE(DDS_LongSeq_from_array(&four_, nullptr, 2));
    EXPECT_FALSE(DDS_LongSeq_from_array(&loan_, numbers_, 3));
    EXPECT_FALSE(DDS_LongSeq_set_element_pointers_allocation(&four_, 0));
    EXPECT_EQ(reports_.take().size(), 19U);
    EXPECT_FALSE(DDS_LongSeq_to_array(&four_, numbers_, 2));
    EXPECT_EQ(reports_.take(),
              (Texts{"DDS_LongSeq_set_length:insufficient space: 2 available, 3 needed",
                     "DDS_LongSeq_copy_no_allocI:insufficient space: 2 available, 3 needed",
                     "DDS_LongSeq_to_array:assertion failed: copying array sequence"}));

    EXPECT_EQ(DDS_LongSeq_get_maximum(&four_), 4);
    EXPECT_EQ(DDS_LongSeq_get_length(&four_), 3);
    EXPECT_EQ(DDS_LongSeq_get(&four_, 2), 30);
    EXPECT_EQ(DDS_LongSeq_get_length(&loan_), 1);
    EXPECT_EQ(DDS_LongSeq_get_maximum(&empty_), 0);
    EXPECT_EQ(DDS_LongSeq_has_ownership(&empty_), 1);
}

TEST_F(SequenceTest, GrowsAndShrinksToExactlyTheMaximumThatIsAsked) {
    EXPECT_EQ(DDS_LongSeq_ensure_length(&empty_, 3, 8), 1);
    EXPECT_EQ(reports_.take(),
              Texts{"DDS_LongSeq_ensure_length:memory allocated: maximum 0 becomes 8"});
    EXPECT_EQ(DDS_LongSeq_get_maximum(&empty_), 8);
    EXPECT_EQ(DDS_LongSeq_get_length(&empty_), 3);
    EXPECT_EQ(DDS_LongSeq_get(&empty_, 2), 0);

    EXPECT_EQ(DDS_LongSeq_set_maximum(&four_, 2), 1);
    EXPECT_EQ(DDS_LongSeq_get_length(&four_), 2);
    EXPECT_EQ(DDS_LongSeq_get(&four_, 1), 20);
    EXPECT_EQ(DDS_LongSeq_set_maximum(&four_, 3), 1);
    EXPECT_EQ(DDS_LongSeq_set_length(&four_, 3), 1);
    EXPECT_EQ(DDS_LongSeq_get(&four_, 2), 0);
    EXPECT_EQ(DDS_LongSeq_finalize(&four_), 1);
    EXPECT_EQ(DDS_LongSeq_get_contiguous_buffer(&four_), nullptr);
}

TEST_F(SequenceTest, GetFallsBackToTheFirstElementIfThereIsOne) {
    EXPECT_EQ(DDS_LongSeq_get(&four_, 3), 10);
    EXPECT_EQ(DDS_LongSeq_get(&pointers_, -1), 30);
    EXPECT_EQ(DDS_LongSeq_get(&empty_, 0), 0);
    EXPECT_EQ(DDS_LongSeq_set_length(&pointers_, 0), 1);
    EXPECT_EQ(DDS_LongSeq_get(&pointers_, 0), 0);
    EXPECT_EQ(reports_.take(), Texts(4, "DDS_LongSeq_get:assertion failed: index out of bounds"));
}

TEST_F(SequenceTest, CopiesBetweenContiguousAndPointerBuffers) {
    EXPECT_EQ(DDS_LongSeq_copy(&empty_, &four_), &empty_);
    EXPECT_EQ(DDS_LongSeq_get_maximum(&empty_), 4);
    EXPECT_EQ(DDS_LongSeq_get_length(&empty_), 3);

    DDS_Long copied[3] = {};
    EXPECT_EQ(DDS_LongSeq_to_array(&pointers_, copied, 3), 1);
    EXPECT_EQ(copied[0], 30);
    EXPECT_EQ(copied[1], 10);

    DDS_Long targets[2] = {};
    DDS_Long* target_pointers[2] = {&targets[1], &targets[0]};
    DDS_LongSeq scattered{};
    ASSERT_EQ(DDS_LongSeq_loan_discontiguous(&scattered, target_pointers, 0, 2), 1);
    EXPECT_EQ(DDS_LongSeq_copy_no_alloc(&scattered, &pointers_), 1);
    EXPECT_EQ(targets[1], 30);
    EXPECT_EQ(targets[0], 10);
    EXPECT_EQ(DDS_LongSeq_get_length(&scattered), 2);
    EXPECT_EQ(DDS_LongSeq_get_reference(&scattered, 1), &targets[0]);
    EXPECT_EQ(DDS_LongSeq_copy(&scattered, &scattered), &scattered);
    EXPECT_EQ(DDS_LongSeq_get_discontiguous_buffer(&scattered), target_pointers);
    EXPECT_EQ(DDS_LongSeq_unloan(&scattered), 1);
    EXPECT_EQ(DDS_LongSeq_has_ownership(&scattered), 1);
    EXPECT_EQ(scattered.maximum + scattered.length, 0);
    EXPECT_EQ(DDS_LongSeq_get_discontiguous_buffer(&scattered), nullptr);
    EXPECT_EQ(DDS_LongSeq_unloan(&loan_), 1);
    EXPECT_EQ(DDS_LongSeq_get_contiguous_buffer(&loan_), nullptr);
    EXPECT_EQ(reports_.take(), Texts{});
}

TEST(StringSequence, OwnsCopiesOfItsStrings) {
    const char* const words[] = {"one", nullptr, "three"};
    DDS_StringSeq sequence{};
    DDS_StringSeq copy{};
    ASSERT_EQ(DDS_StringSeq_from_array(&sequence, const_cast<char* const*>(words), 3), 1);
    ASSERT_EQ(DDS_StringSeq_copy(&copy, &sequence), &copy);
    EXPECT_STREQ(DDS_StringSeq_get(&copy, 0), "one");
    EXPECT_EQ(DDS_StringSeq_get(&copy, 1), nullptr);
    DDS_String_replace(DDS_StringSeq_get_reference(&sequence, 2), "3");
    EXPECT_STREQ(DDS_StringSeq_get(&copy, 2), "three");
    ASSERT_EQ(DDS_StringSeq_ensure_length(&copy, 5, 5), 1);
    EXPECT_STREQ(DDS_StringSeq_get(&copy, 4), "");
    EXPECT_STREQ(DDS_StringSeq_get(&copy, 2), "three");
    DDS_StringSeq_finalize(&sequence);
    DDS_StringSeq_finalize(&copy);

    const DDS_TypeAllocationParams_t without_memory = {1, 0, 0};
    ASSERT_EQ(DDS_StringSeq_set_element_allocation_params(&copy, &without_memory), 1);
    ASSERT_EQ(DDS_StringSeq_ensure_length(&copy, 1, 1), 1);
    EXPECT_EQ(DDS_StringSeq_get(&copy, 0), nullptr);
    DDS_StringSeq_finalize(&copy);
}

TEST(WithoutMemory, NothingOfACopyLeaksAndGrowingThatFailsChangesNothing) {
    orvane::test::Reports reports;
    char text[] = "word";
    char* words[] = {text, text, text};
    DDS_StringSeq source{};
    DDS_StringSeq_from_array(&source, words, 3);
    orvane::test::sweep(orvane::test::heap_allocation, [&] {
        DDS_StringSeq copy{};
        const bool copied = DDS_StringSeq_copy(&copy, &source) != nullptr;
        const bool grown = copied && DDS_StringSeq_set_maximum(&copy, 10) != 0;
        if (copied) {
            EXPECT_EQ(DDS_StringSeq_get_maximum(&copy), grown ? 10 : 3);
            EXPECT_EQ(DDS_StringSeq_get_length(&copy), 3);
            EXPECT_STREQ(DDS_StringSeq_get(&copy, 2), "word");
        }
        DDS_StringSeq_finalize(&copy);
        return grown;
    });
    EXPECT_EQ(
        std::ranges::count(reports.take(), "DDS_StringSeq_set_maximum:could not allocate 24 bytes"),
        1);
    DDS_StringSeq_finalize(&source);
}

}  // namespace

#include <gtest/gtest.h>

#include <climits>

#include "pexa/string.h"
#include "platform/internal/sequence_define.hpp"
#include "tests/support/heap_faults.hpp"
#include "tests/support/reports.hpp"

namespace {

using Texts = std::vector<std::string>;

// Reports go nowhere, which keeps thousands of expected ones out of the output.
class SequenceMemoryTest : public testing::Test {
public:
    SequenceMemoryTest() {
        char* words[] = {text_, text_, text_};
        DDS_StringSeq_from_array(&source_, words, 3);
        reports_.take();
    }
    ~SequenceMemoryTest() override { DDS_StringSeq_finalize(&source_); }

protected:
    char text_[5] = "word";
    DDS_StringSeq source_{};
    Reports reports_;
};

TEST_F(SequenceMemoryTest, CopyingStringsSurvivesEveryFailingAllocation) {
    heap_faults::sweep([this] {
        DDS_StringSeq copy{};
        const bool copied = DDS_StringSeq_copy(&copy, &source_) != nullptr;
        DDS_StringSeq_finalize(&copy);
        return copied;
    });
}

TEST_F(SequenceMemoryTest, GrowingThatFailsChangesNothing) {
    heap_faults::sweep([this] {
        char* const* before = DDS_StringSeq_get_contiguous_buffer(&source_);
        const bool grown = DDS_StringSeq_set_maximum(&source_, 10) != 0;
        EXPECT_EQ(DDS_StringSeq_get_contiguous_buffer(&source_) == before, !grown);
        EXPECT_EQ(DDS_StringSeq_get_maximum(&source_), grown ? 10 : 3);
        EXPECT_EQ(DDS_StringSeq_get_length(&source_), 3);
        EXPECT_STREQ(DDS_StringSeq_get(&source_, 2), "word");
        // Shrinking copies as well. It is tried again if it met the failure, so that every round
        // begins alike.
        const bool shrunk = grown && DDS_StringSeq_set_maximum(&source_, 3) != 0;
        EXPECT_TRUE(shrunk || !grown || DDS_StringSeq_set_maximum(&source_, 3) != 0);
        return shrunk;
    });
}

TEST_F(SequenceMemoryTest, FailedAllocationsAreReportedWithTheirSize) {
    DDS_LongSeq numbers{};
    heap_faults::fail_allocation(1);
    EXPECT_EQ(DDS_LongSeq_ensure_length(&numbers, 1, 6), 0);
    EXPECT_EQ(reports_.take(),
              (Texts{"DDS_LongSeq_ensure_length:memory allocated: maximum 0 becomes 6",
                     "DDS_LongSeq_set_maximum:could not allocate 24 bytes",
                     "DDS_LongSeq_ensure_length:insufficient space: 0 available, 6 needed"}));
    heap_faults::fail_allocation(1);
    EXPECT_EQ(DDS_LongSeq_set_maximum(&numbers, INT_MAX), 0);
    EXPECT_EQ(reports_.take(),
              Texts{"DDS_LongSeq_set_maximum:could not allocate 2147483647 bytes"});
}

// An element of two allocations, of which the second may be the one that fails.
struct Pair {
    char* first;
    char* second;
};

DDS_Boolean initialize_pair(void* element, const DDS_TypeAllocationParams_t* /*params*/) {
    auto* pair = static_cast<Pair*>(element);
    pair->first = DDS_String_dup("first");
    pair->second = DDS_String_dup("second");
    return pair->first != nullptr && pair->second != nullptr ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
}

void finalize_pair(void* element, const DDS_TypeDeallocationParams_t* /*params*/) {
    DDS_String_free(static_cast<Pair*>(element)->first);
    DDS_String_free(static_cast<Pair*>(element)->second);
}

TEST_F(SequenceMemoryTest, ElementsThatAreHalfInitialisedAreFinalised) {
    const PEXASequenceElement pair = {"PairSeq", sizeof(Pair), initialize_pair, finalize_pair,
                                      nullptr};
    heap_faults::sweep([&pair] {
        PEXASequence sequence{};
        const bool made = PEXASequence_set_maximum(&sequence, &pair, 3) != 0;
        PEXASequence_finalize(&sequence, &pair);
        return made;
    });
}

}  // namespace

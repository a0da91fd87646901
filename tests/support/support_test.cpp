// The tests' own tools, where a silent fault would make other tests blind.
#include <new>
#include <vector>

#include "pexa/osapi.h"
#include "pexa/string.h"
#include "tests/support/faults.hpp"
#include "tests/support/node.hpp"
#include "tests/support/text.hpp"

namespace orvane::test {
namespace {

TEST(Fault, StrikesTheCallThatItNamesAndNoOther) {
    const Calls calls("DDS_String_dup");
    {
        const Fault fault("DDS_String_dup", 2);
        char* first = DDS_String_dup("text");
        EXPECT_STREQ(first, "text");
        EXPECT_FALSE(fault.has_struck());
        EXPECT_EQ(DDS_String_dup("text"), nullptr);
        EXPECT_TRUE(fault.has_struck());
        DDS_String_free(first);
    }
    DDS_String_free(DDS_String_dup("text"));
    EXPECT_EQ(calls.count(), 3);
    EXPECT_EQ(live_blocks(), 0);
}

TEST(Fault, MayLetTheCallDoItsWorkFirst) {
    const Fault fault("QELOsapi_global_lock", {.call = 1, .after = true});
    EXPECT_NE(QELOsapi_global_lock(), 0);
    EXPECT_EQ(QELOsapi_global_unlock(), 0) << "the lock was taken";
}

TEST(Stub, DoesTheWorkOfAFunction) {
    const Stub<decltype(QELSystemClock_getTime)> stub("QELSystemClock_getTime",
                                                      [](QELSystemClock*, QELNtpTime* now) {
                                                          *now = {7, 0};
                                                          return 1;
                                                      });
    QELNtpTime now{};
    QELSystemClock_getTime(nullptr, &now);
    EXPECT_EQ(now.sec, 7);
}

TEST(Sweep, FailsEachAllocationInTurn) {
    int attempts = 0;
    sweep(heap_allocation, [&] {
        ++attempts;
        char* first = DDS_String_dup("a");
        char* second = DDS_String_dup("b");
        const bool complete = first != nullptr && second != nullptr;
        DDS_String_free(first);
        DDS_String_free(second);
        return complete;
    });
    EXPECT_EQ(attempts, 3);
    sweep(new_expression, [&] {
        try {
            return std::vector<int>(static_cast<std::size_t>(attempts)).size() == 3;
        } catch (const std::bad_alloc&) {
            return false;
        }
    });
}

TEST(Node, HandsSamplesFromWriterToReader) {
    const Node node;
    DDS_DataWriter* writer = node.writer<QEL_KX_LogMessage>();
    DDS_DataReader* reader = node.reader<QEL_KX_LogMessage>();
    const Sample<QEL_KX_LogMessage> sample = make_sample<QEL_KX_LogMessage>();
    sample->level = 3;
    EXPECT_EQ(TopicType<QEL_KX_LogMessage>::write(writer, sample.get(), &DDS_HANDLE_NIL),
              DDS_RETCODE_OK);
    EXPECT_EQ(take<QEL_KX_LogMessage>(reader, 1).front().sample->level, 3);
    EXPECT_EQ(hexadecimal(bytes("05 'hi' FF")), "05 68 69 FF ");
}

}  // namespace
}  // namespace orvane::test

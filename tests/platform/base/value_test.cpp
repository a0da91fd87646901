#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <ctime>

#include "pexa/base.h"
#include "pexa/osapi.h"
#include "pexa/string.h"

namespace {

TEST(NtpTime, BecomesTheNextWholeNanosecondAndCarriesAFullSecond) {
    struct Case {
        QELNtpTime time;
        DDS_Long sec;
        DDS_UnsignedLong nanosec;
    };
    const Case cases[] = {
        {{7, 0}, 7, 0},
        {{7, 1}, 7, 1},
        {{7, 4}, 7, 1},
        {{7, 5}, 7, 2},
        {{7, 0x80000000U}, 7, 500000001},
        {{7, 429491200U}, 7, 99998713},
        {{7, 2305843008U}, 7, 536870912},
        {{7, 2305843009U}, 7, 536870912},
        {{7, 2305843010U}, 7, 536870913},
        {{7, 0xffffffffU}, 8, 0},
        {{-1, 0xffffffffU}, 0, 0},
        {{INT_MAX - 1, 0xffffffffU}, INT_MAX, 0},
        {{INT_MAX, 0xffffffffU}, INT_MAX, 1000000000},
    };
    for (const Case& item : cases) {
        const DDS_Time_t time = QELNtpTime_toTime(item.time);
        EXPECT_EQ(time.sec, item.sec) << item.time.frac;
        EXPECT_EQ(time.nanosec, item.nanosec) << item.time.frac;
    }
}

TEST(SystemClock, ShowsTheWallClock) {
    QELSystemClock* clock = QELSystemClock_new();
    const time_t before = std::time(nullptr);
    QELNtpTime now{};
    EXPECT_EQ(QELSystemClock_getTime(clock, &now), 1);
    // The clock of time() may be a tick late.
    EXPECT_GE(now.sec, before);
    EXPECT_LE(now.sec, std::time(nullptr) + 1);
    EXPECT_EQ(QELSystemClock_getTime(nullptr, &now), 0);
    EXPECT_EQ(QELSystemClock_getTime(clock, nullptr), 0);
    QELSystemClock_delete(clock);
}

TEST(Heap, RefusesWhatCannotBeAllocated) {
    EXPECT_EQ(QELOsapiHeap_allocateBytes(0), nullptr);
    EXPECT_EQ(QELOsapiHeap_allocateArrayOfSize(SIZE_MAX / 2, 4), nullptr);
    EXPECT_EQ(QELOsapiHeap_allocateBufferAligned(16, 24), nullptr);
    void* buffer = QELOsapiHeap_allocateBufferAligned(3, 1);
    EXPECT_NE(buffer, nullptr);
    QELOsapiHeap_freeBufferAligned(buffer);
}

TEST(InstanceHandle, EqualsByKeyHashWhenValidAndByValidityOtherwise) {
    DDS_InstanceHandle_t one = {{{1, 2, 3}, 16}, DDS_BOOLEAN_TRUE};
    DDS_InstanceHandle_t other = one;
    other.keyHash.value[15] = 9;
    DDS_InstanceHandle_t invalid = other;
    invalid.isValid = DDS_BOOLEAN_FALSE;
    struct Case {
        const DDS_InstanceHandle_t* left;
        const DDS_InstanceHandle_t* right;
        bool equal;
    };
    const Case cases[] = {
        {&one, &one, true},        {&one, &other, false},     {&one, &invalid, false},
        {&other, &invalid, false}, {&invalid, &other, false}, {&invalid, &DDS_HANDLE_NIL, true},
        {nullptr, &invalid, true}, {nullptr, &one, false},
    };
    for (const Case& item : cases) {
        EXPECT_EQ(DDS_InstanceHandle_equals(item.left, item.right) != 0, item.equal);
    }
}

TEST(String, ReplacesOnlyWhenTheCopyExists) {
    char* text = DDS_String_dup("old");
    EXPECT_EQ(DDS_String_replace(&text, nullptr), nullptr);
    EXPECT_STREQ(text, "old");
    EXPECT_EQ(DDS_String_replace(&text, text + 1), text);
    EXPECT_STREQ(text, "ld");
    DDS_String_free(text);
    EXPECT_EQ(DDS_String_replace(nullptr, "new"), nullptr);
    EXPECT_EQ(DDS_String_alloc(SIZE_MAX), nullptr);
}

TEST(String, CopiesIntoABufferOnlyWithItsTerminator) {
    char buffer[5] = "####";
    EXPECT_EQ(DDS_String_copyBounded(buffer, "abcd", 4), 0);
    EXPECT_STREQ(buffer, "####");
    EXPECT_EQ(DDS_String_copyBounded(buffer, "abc", 4), 1);
    EXPECT_EQ(std::memcmp(buffer, "abc\0", 5), 0);
    EXPECT_EQ(DDS_String_copyBounded(buffer, "", 0), 0);
    EXPECT_EQ(DDS_String_copyBounded(buffer, nullptr, 4), 0);
    EXPECT_EQ(DDS_String_copyBounded(nullptr, "", 4), 0);
}

TEST(String, ComparesWithoutRegardToAsciiCase) {
    struct Case {
        const char* left;
        const char* right;
        int sign;
    };
    const Case cases[] = {
        {"qel/KX/Log", "QEL/kx/lOG", 0},
        {"a", "B", -1},
        {"[", "A", -1},
        {"ab", "a", 1},
        {"", "", 0},
        {nullptr, "", -1},
        {"", nullptr, 1},
        {nullptr, nullptr, 0},
        {"\xc4", "\xe4", -1},
    };
    for (const Case& item : cases) {
        const int result = MOSKString_iCompare(item.left, item.right);
        EXPECT_EQ((result > 0) - (result < 0), item.sign);
    }
}

}  // namespace

#include <gtest/gtest.h>

#include <climits>
#include <cstring>

#include "pexa/base.h"
#include "pexa/osapi.h"
#include "pexa/string.h"

namespace {

TEST(NtpTime, BecomesTheNextWholeNanosecondAndCarriesAFullSecond) {
    const std::pair<QELNtpTime, DDS_Time_t> cases[] = {
        {{7, 0}, {7, 0}},
        {{7, 4}, {7, 1}},
        {{7, 5}, {7, 2}},
        {{7, 0x80000000U}, {7, 500000001}},
        {{7, 429491200U}, {7, 99998713}},
        {{7, 2305843009U}, {7, 536870912}},
        {{7, 2305843010U}, {7, 536870913}},
        {{-1, 0xffffffffU}, {0, 0}},
        {{INT_MAX - 1, 0xffffffffU}, {INT_MAX, 0}},
        {{INT_MAX, 0xffffffffU}, {INT_MAX, 1000000000}},
    };
    for (const auto& [ntp, expected] : cases) {
        const DDS_Time_t time = QELNtpTime_toTime(ntp);
        EXPECT_EQ(time.sec, expected.sec) << ntp.frac;
        EXPECT_EQ(time.nanosec, expected.nanosec) << ntp.frac;
    }
}

TEST(Heap, RefusesWhatCannotBeAllocated) {
    EXPECT_EQ(QELOsapiHeap_allocateBytes(0), nullptr);
    EXPECT_EQ(QELOsapiHeap_allocateArrayOfSize(SIZE_MAX / 2, 4), nullptr);
    EXPECT_EQ(QELOsapiHeap_allocateBufferAligned(16, 24), nullptr);
    EXPECT_EQ(DDS_String_alloc(SIZE_MAX), nullptr);
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
    const struct {
        const DDS_InstanceHandle_t* left;
        const DDS_InstanceHandle_t* right;
        bool equal;
    } cases[] = {
        {&one, &one, true},        {&one, &other, false},     {&one, &invalid, false},
        {&other, &invalid, false}, {&invalid, &other, false}, {&invalid, &DDS_HANDLE_NIL, true},
        {nullptr, &invalid, true}, {nullptr, &one, false},
    };
    for (const auto& [left, right, equal] : cases) {
        EXPECT_EQ(DDS_InstanceHandle_equals(left, right) != 0, equal);
    }
}

TEST(String, IsReplacedByACopyAndCopiedIntoABufferOnlyWithItsTerminator) {
    char* text = DDS_String_dup("old");
    EXPECT_EQ(DDS_String_replace(&text, nullptr), nullptr);
    EXPECT_EQ(DDS_String_replace(&text, text + 1), text);
    EXPECT_STREQ(text, "ld");
    DDS_String_free(text);
    char buffer[5] = "####";
    EXPECT_EQ(DDS_String_copyBounded(buffer, "abcd", 4), 0);
    EXPECT_STREQ(buffer, "####");
    EXPECT_EQ(DDS_String_copyBounded(buffer, "abc", 4), 1);
    EXPECT_EQ(std::memcmp(buffer, "abc\0", 5), 0);
    EXPECT_EQ(DDS_String_copyBounded(buffer, "", 0), 0);
}

TEST(String, ComparesWithoutRegardToAsciiCase) {
    const struct {
        const char* left;
        const char* right;
        int sign;
    } cases[] = {
        {"qel/KX/Log", "QEL/kx/lOG", 0},
        {"a", "B", -1},
        {"[", "A", -1},
        {"ab", "a", 1},
        {nullptr, "", -1},
        {"\xc4", "\xe4", -1},
    };
    for (const auto& [left, right, sign] : cases) {
        const int result = MOSKString_iCompare(left, right);
        EXPECT_EQ((result > 0) - (result < 0), sign);
    }
}

}  // namespace

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
    EXPECT_EQ(QELOsapiHeap_allocateArrayOfSize(SIZE_MAX / 2 + 2, 4), nullptr);
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
    EXPECT_TRUE(DDS_InstanceHandle_equals(&one, &one));
    EXPECT_FALSE(DDS_InstanceHandle_equals(&one, &other));
    EXPECT_FALSE(DDS_InstanceHandle_equals(&other, &invalid));
    EXPECT_FALSE(DDS_InstanceHandle_equals(&invalid, &other));
    EXPECT_TRUE(DDS_InstanceHandle_equals(&invalid, &DDS_HANDLE_NIL));
    EXPECT_TRUE(DDS_InstanceHandle_equals(nullptr, &invalid));
    EXPECT_FALSE(DDS_InstanceHandle_equals(nullptr, &one));
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
    EXPECT_EQ(MOSKString_iCompare("qel/KX/Log", "QEL/kx/lOG"), 0);
    EXPECT_LT(MOSKString_iCompare("a", "B"), 0);
    EXPECT_LT(MOSKString_iCompare("[", "A"), 0);
    EXPECT_GT(MOSKString_iCompare("ab", "a"), 0);
    EXPECT_LT(MOSKString_iCompare(nullptr, ""), 0);
    EXPECT_LT(MOSKString_iCompare("\xc4", "\xe4"), 0);
}

}  // namespace

#include <cstring>

#include "pexa/thread_settings.h"
#include "tests/support/faults.hpp"
#include "tests/support/text.hpp"

namespace {

TEST(ThreadSettings, DifferWhenAnyMemberDoesAndStayAsTheyAreWhenACopyFails) {
    const DDS_Long cpus[] = {3, 1};
    DDS_ThreadSettings_t filled;
    DDS_ThreadSettings_t standard;
    DDS_ThreadSettings_t other;
    for (DDS_ThreadSettings_t* settings : {&filled, &standard, &other}) {
        DDS_ThreadSettings_t_initialize(settings);
    }
    filled.mask = DDS_THREAD_SETTINGS_STDIO | DDS_THREAD_SETTINGS_PRIORITY_ENFORCE;
    filled.cpu_rotation = DDS_THREAD_SETTINGS_CPU_RR_ROTATION;
    ASSERT_TRUE(DDS_LongSeq_from_array(&filled.cpu_list, cpus, 2));

    void (*const changes[])(DDS_ThreadSettings_t&) = {
        [](DDS_ThreadSettings_t& s) { s.mask = DDS_THREAD_SETTINGS_FLOATING_POINT; },
        [](DDS_ThreadSettings_t& s) { s.priority = 8; },
        [](DDS_ThreadSettings_t& s) { s.stack_size = 1; },
        [](DDS_ThreadSettings_t& s) { s.cpu_rotation = DDS_THREAD_SETTINGS_CPU_NO_ROTATION; },
        [](DDS_ThreadSettings_t& s) { *DDS_LongSeq_get_reference(&s.cpu_list, 1) = 2; },
        [](DDS_ThreadSettings_t& s) { DDS_LongSeq_set_length(&s.cpu_list, 1); },
        [](DDS_ThreadSettings_t& s) {
            const int no_rotation_at_all = 7;
            std::memcpy(&s.cpu_rotation, &no_rotation_at_all, sizeof s.cpu_rotation);
        },
    };
    for (const auto change : changes) {
        ASSERT_TRUE(DDS_ThreadSettings_t_copy(&other, &filled));
        EXPECT_TRUE(DDS_ThreadSettings_is_equal(&filled, &other));
        change(other);
        EXPECT_FALSE(DDS_ThreadSettings_is_equal(&filled, &other));
    }
    EXPECT_TRUE(DDS_ThreadSettings_t_copy(&filled, &filled));
    EXPECT_EQ(DDS_LongSeq_get_length(&filled.cpu_list), 2);
    EXPECT_FALSE(DDS_ThreadSettings_t_copy(nullptr, &filled));
    EXPECT_FALSE(DDS_ThreadSettings_is_equal(&filled, nullptr));

    const orvane::test::Reports silence;
    orvane::test::sweep(orvane::test::heap_allocation, [&] {
        DDS_ThreadSettings_t copy;
        DDS_ThreadSettings_t_initialize(&copy);
        const bool copied = DDS_ThreadSettings_t_copy(&copy, &filled) != 0;
        EXPECT_TRUE(DDS_ThreadSettings_is_equal(&copy, copied ? &filled : &standard));
        DDS_ThreadSettings_t_finalize(&copy);
        return copied;
    });
    for (DDS_ThreadSettings_t* settings : {&filled, &standard, &other}) {
        DDS_ThreadSettings_t_finalize(settings);
    }
}

}  // namespace

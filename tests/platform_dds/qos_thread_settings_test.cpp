#include <gtest/gtest.h>

#include "../platform_core/heap_faults.hpp"
#include "../platform_core/reports.hpp"
#include "pexa/thread_settings.h"

namespace {

class ThreadSettings : public testing::Test {
protected:
    void SetUp() override {
        DDS_ThreadSettings_t_initialize(&one_);
        DDS_ThreadSettings_t_initialize(&other_);
    }
    void TearDown() override {
        DDS_ThreadSettings_t_finalize(&one_);
        DDS_ThreadSettings_t_finalize(&other_);
    }

    static void fill(DDS_ThreadSettings_t& settings) {
        const DDS_Long cpus[] = {3, 1};
        settings.mask = DDS_THREAD_SETTINGS_STDIO | DDS_THREAD_SETTINGS_PRIORITY_ENFORCE;
        settings.priority = 7;
        settings.stack_size = 65536;
        settings.cpu_rotation = DDS_THREAD_SETTINGS_CPU_RR_ROTATION;
        ASSERT_TRUE(DDS_LongSeq_from_array(&settings.cpu_list, cpus, 2));
    }

    DDS_ThreadSettings_t one_;
    DDS_ThreadSettings_t other_;
};

TEST_F(ThreadSettings, begin_with_what_the_system_chooses) {
    EXPECT_EQ(one_.mask, 0U);
    EXPECT_EQ(one_.priority, -9999999);
    EXPECT_EQ(one_.stack_size, -1);
    EXPECT_EQ(one_.cpu_rotation, DDS_THREAD_SETTINGS_CPU_NO_ROTATION);
    EXPECT_EQ(DDS_LongSeq_get_length(&one_.cpu_list), 0);
}

TEST_F(ThreadSettings, differ_when_any_member_does) {
    void (*const changes[])(DDS_ThreadSettings_t&) = {
        [](DDS_ThreadSettings_t& s) { s.mask = DDS_THREAD_SETTINGS_FLOATING_POINT; },
        [](DDS_ThreadSettings_t& s) { s.priority = 8; },
        [](DDS_ThreadSettings_t& s) { s.stack_size = 1; },
        [](DDS_ThreadSettings_t& s) { s.cpu_rotation = DDS_THREAD_SETTINGS_CPU_NO_ROTATION; },
        [](DDS_ThreadSettings_t& s) { *DDS_LongSeq_get_reference(&s.cpu_list, 1) = 2; },
        [](DDS_ThreadSettings_t& s) { DDS_LongSeq_set_length(&s.cpu_list, 1); },
    };
    fill(one_);
    for (const auto change : changes) {
        ASSERT_TRUE(DDS_ThreadSettings_t_copy(&other_, &one_));
        EXPECT_TRUE(DDS_ThreadSettings_is_equal(&one_, &other_));
        change(other_);
        EXPECT_FALSE(DDS_ThreadSettings_is_equal(&one_, &other_));
    }
    EXPECT_TRUE(DDS_ThreadSettings_t_copy(&one_, &one_));
    EXPECT_EQ(DDS_LongSeq_get_length(&one_.cpu_list), 2);
}

TEST_F(ThreadSettings, stay_as_they_are_when_a_copy_fails) {
    const Reports silence;
    fill(one_);
    heap_faults::sweep([this] {
        DDS_ThreadSettings_t copy;
        DDS_ThreadSettings_t_initialize(&copy);
        const bool copied = DDS_ThreadSettings_t_copy(&copy, &one_) != 0;
        EXPECT_TRUE(DDS_ThreadSettings_is_equal(&copy, copied ? &one_ : &other_));
        DDS_ThreadSettings_t_finalize(&copy);
        return copied;
    });
}

TEST_F(ThreadSettings, operations_stand_null) {
    DDS_ThreadSettings_t_initialize(nullptr);
    DDS_ThreadSettings_t_finalize(nullptr);
    EXPECT_FALSE(DDS_ThreadSettings_t_copy(nullptr, &one_));
    EXPECT_FALSE(DDS_ThreadSettings_t_copy(&one_, nullptr));
    EXPECT_FALSE(DDS_ThreadSettings_is_equal(&one_, nullptr));
}

}  // namespace

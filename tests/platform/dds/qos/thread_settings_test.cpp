#include <gtest/gtest.h>

#include <cstring>

#include "pexa/thread_settings.h"
#include "tests/support/heap_faults.hpp"
#include "tests/support/reports.hpp"

namespace {

class ThreadSettings : public testing::Test {
public:
    ThreadSettings() {
        const DDS_Long cpus[] = {3, 1};
        DDS_ThreadSettings_t_initialize(&filled_);
        DDS_ThreadSettings_t_initialize(&other_);
        filled_.mask = DDS_THREAD_SETTINGS_STDIO | DDS_THREAD_SETTINGS_PRIORITY_ENFORCE;
        filled_.cpu_rotation = DDS_THREAD_SETTINGS_CPU_RR_ROTATION;
        EXPECT_TRUE(DDS_LongSeq_from_array(&filled_.cpu_list, cpus, 2));
    }
    ~ThreadSettings() override {
        DDS_ThreadSettings_t_finalize(&filled_);
        DDS_ThreadSettings_t_finalize(&other_);
    }

protected:
    DDS_ThreadSettings_t filled_;
    DDS_ThreadSettings_t other_;
};

TEST_F(ThreadSettings, DifferWhenAnyMemberDoes) {
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
        ASSERT_TRUE(DDS_ThreadSettings_t_copy(&other_, &filled_));
        EXPECT_TRUE(DDS_ThreadSettings_is_equal(&filled_, &other_));
        change(other_);
        EXPECT_FALSE(DDS_ThreadSettings_is_equal(&filled_, &other_));
    }
    EXPECT_TRUE(DDS_ThreadSettings_t_copy(&filled_, &other_));
    EXPECT_TRUE(DDS_ThreadSettings_is_equal(&filled_, &other_));
    EXPECT_TRUE(DDS_ThreadSettings_t_copy(&filled_, &filled_));
    EXPECT_EQ(DDS_LongSeq_get_length(&filled_.cpu_list), 2);
    DDS_ThreadSettings_t_initialize(nullptr);
    DDS_ThreadSettings_t_finalize(nullptr);
    EXPECT_FALSE(DDS_ThreadSettings_t_copy(nullptr, &filled_));
    EXPECT_FALSE(DDS_ThreadSettings_is_equal(&filled_, nullptr));
}

TEST_F(ThreadSettings, StayAsTheyAreWhenACopyFails) {
    const Reports silence;
    heap_faults::sweep([this] {
        DDS_ThreadSettings_t copy;
        DDS_ThreadSettings_t_initialize(&copy);
        const bool copied = DDS_ThreadSettings_t_copy(&copy, &filled_) != 0;
        EXPECT_TRUE(DDS_ThreadSettings_is_equal(&copy, copied ? &filled_ : &other_));
        DDS_ThreadSettings_t_finalize(&copy);
        return copied;
    });
}

}  // namespace

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "pexa/osapi.h"

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// Runs something on another thread while this one holds the lock.
template <class Action>
void while_locked(Action action) {
    ASSERT_EQ(QELOsapi_global_lock(), 0);
    std::thread(action).join();
    ASSERT_EQ(QELOsapi_global_unlock(), 0);
}

TEST(GlobalLock, BelongsToTheThreadThatTookIt) {
    EXPECT_NE(QELOsapi_global_unlock(), 0);
    while_locked([] { EXPECT_NE(QELOsapi_global_unlock(), 0); });
    ASSERT_EQ(QELOsapi_global_lock(), 0);
    EXPECT_EQ(QELOsapi_global_lock(), 0);
    EXPECT_EQ(QELOsapi_global_unlock(), 0);
    EXPECT_EQ(QELOsapi_global_unlock(), 0);
    EXPECT_NE(QELOsapi_global_unlock(), 0);
}

TEST(GlobalLock, IsGivenUpAfterTenMillisecondsInsideADeviceCall) {
    while_locked([] {
        // Device calls nest on their thread.
        QELOsapi_enterDeviceCall();
        QELOsapi_enterDeviceCall();
        QELOsapi_leaveDeviceCall();
        EXPECT_EQ(QELOsapi_isInDeviceCall(), 1);
        std::thread([] { EXPECT_EQ(QELOsapi_isInDeviceCall(), 0); }).join();
        const DDS_Long never = 0;
        for (const bool has_flag : {false, true}) {
            const Clock::time_point start = Clock::now();
            EXPECT_NE(has_flag ? QELOsapi_global_lockUnless(&never) : QELOsapi_global_lock(), 0);
            EXPECT_GE(Clock::now() - start, milliseconds(10));
            EXPECT_LT(Clock::now() - start, milliseconds(2000));
        }
        EXPECT_NE(QELOsapi_global_unlock(), 0);
        QELOsapi_leaveDeviceCall();
        QELOsapi_leaveDeviceCall();
        EXPECT_EQ(QELOsapi_isInDeviceCall(), 0);
    });
}

TEST(GlobalLock, IsAbandonedOnceTheFlagIsRaised) {
    DDS_Long abandon = 0;
    std::atomic<bool> about_to_lock{false};
    ASSERT_EQ(QELOsapi_global_lock(), 0);
    std::thread waiter([&] {
        about_to_lock = true;
        about_to_lock.notify_one();
        EXPECT_NE(QELOsapi_global_lockUnless(&abandon), 0);
    });
    about_to_lock.wait(false);
    __atomic_store_n(&abandon, 1, __ATOMIC_RELEASE);
    // Would never end if the waiter insisted on the lock.
    waiter.join();
    // Whoever holds the lock waits for nobody, and neither does anybody while it is free.
    EXPECT_EQ(QELOsapi_global_lockUnless(&abandon), 0);
    EXPECT_EQ(QELOsapi_global_unlock(), 0);
    EXPECT_EQ(QELOsapi_global_unlock(), 0);
    EXPECT_EQ(QELOsapi_global_lockUnless(&abandon), 0);
    EXPECT_EQ(QELOsapi_global_unlock(), 0);
}

TEST(GlobalLock, IsWaitedForBeyondTenMillisecondsWhileTheFlagIsDown) {
    const DDS_Long abandon = 0;
    std::atomic<bool> locked{false};
    std::thread owner([&locked] {
        ASSERT_EQ(QELOsapi_global_lock(), 0);
        locked = true;
        locked.notify_one();
        std::this_thread::sleep_for(milliseconds(35));
        EXPECT_EQ(QELOsapi_global_unlock(), 0);
    });
    locked.wait(false);
    EXPECT_EQ(QELOsapi_global_lockUnless(&abandon), 0);
    EXPECT_EQ(QELOsapi_global_unlock(), 0);
    owner.join();
}

}  // namespace

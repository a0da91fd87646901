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

class DeviceCall {
public:
    DeviceCall() { QELOsapi_enterDeviceCall(); }
    ~DeviceCall() { QELOsapi_leaveDeviceCall(); }
    DeviceCall(const DeviceCall&) = delete;
    DeviceCall& operator=(const DeviceCall&) = delete;
};

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
        const DeviceCall outer;
        const DDS_Long never = 0;
        for (const bool has_flag : {false, true}) {
            const Clock::time_point start = Clock::now();
            EXPECT_NE(has_flag ? QELOsapi_global_lockUnless(&never) : QELOsapi_global_lock(), 0);
            EXPECT_GE(Clock::now() - start, milliseconds(10));
            EXPECT_LT(Clock::now() - start, milliseconds(2000));
        }
        EXPECT_NE(QELOsapi_global_unlock(), 0);
    });
    const DeviceCall free_call;
    EXPECT_EQ(QELOsapi_global_lock(), 0);
    EXPECT_EQ(QELOsapi_global_lock(), 0);
    EXPECT_EQ(QELOsapi_global_unlock(), 0);
    EXPECT_EQ(QELOsapi_global_unlock(), 0);
}

TEST(GlobalLock, DeviceCallsNestOnTheirThread) {
    EXPECT_EQ(QELOsapi_isInDeviceCall(), 0);
    {
        const DeviceCall outer;
        { const DeviceCall inner; }
        EXPECT_EQ(QELOsapi_isInDeviceCall(), 1);
        std::thread([] { EXPECT_EQ(QELOsapi_isInDeviceCall(), 0); }).join();
    }
    EXPECT_EQ(QELOsapi_isInDeviceCall(), 0);
    QELOsapi_leaveDeviceCall();
    EXPECT_EQ(QELOsapi_isInDeviceCall(), 0);
}

TEST(GlobalLock, IsAbandonedOnceTheFlagIsRaised) {
    DDS_Long abandon = 0;
    std::atomic<bool> about_to_lock{false};
    ASSERT_EQ(QELOsapi_global_lock(), 0);
    std::thread waiter([&] {
        about_to_lock = true;
        EXPECT_NE(QELOsapi_global_lockUnless(&abandon), 0);
    });
    while (!about_to_lock) {
        std::this_thread::yield();
    }
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
        const QELNtpTime while_longer = {0, 35 * QEL_NTP_TIME_FRAC_PER_MILLISECOND};
        QELOsapiThread_sleep(&while_longer);
        EXPECT_EQ(QELOsapi_global_unlock(), 0);
    });
    while (!locked) {
        std::this_thread::yield();
    }
    EXPECT_EQ(QELOsapi_global_lockUnless(&abandon), 0);
    EXPECT_EQ(QELOsapi_global_unlock(), 0);
    owner.join();
}

}  // namespace

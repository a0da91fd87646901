#include <gtest/gtest.h>
#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <bit>
#include <chrono>
#include <climits>
#include <functional>
#include <thread>
#include <vector>

#include "pexa/osapi.h"
#include "platform/base/os/deadline.hpp"

namespace {

std::atomic<int> waits{0};
/// Those of them that have a deadline.
std::atomic<int> timed_waits{0};
std::atomic<int> naps{0};
std::atomic<int> wakeups{0};
std::atomic<long> last_nap{0};
std::atomic<long> last_wakeup{0};
/// What takes the place of naps, if anything does.
std::function<void()> instead_of_napping;

/// A taker that dozes sleeps on the high half of the semaphore's word; nothing else waits on one.
bool is_high_half(long address) {
    return address % 8 == (std::endian::native == std::endian::little ? 4 : 0);
}

}  // namespace

extern "C" {
long __real_syscall(long number, ...);
long __wrap_syscall(long number, long a, long b, long c, long d, long e, long f) {
    if (number == SYS_futex && b == FUTEX_WAKE_PRIVATE) {
        ++wakeups;
        last_wakeup = a;
    } else if (number == SYS_futex && is_high_half(a)) {
        ++naps;
        last_nap = a;
        if (instead_of_napping) {
            // The kernel would let nobody sleep on another value.
            EXPECT_EQ(*reinterpret_cast<const uint32_t*>(a), static_cast<uint32_t>(c));
            instead_of_napping();
            return 0;
        }
    } else if (number == SYS_futex) {
        timed_waits += d != 0 ? 1 : 0;
        ++waits;
    }
    return __real_syscall(number, a, b, c, d, e, f);
}
}

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr QELOsapiSemaphoreStatus ok = QEL_OSAPI_SEMAPHORE_STATUS_OK;
constexpr QELOsapiSemaphoreStatus timeout = QEL_OSAPI_SEMAPHORE_STATUS_TIMEOUT;
constexpr QELOsapiSemaphoreStatus error = QEL_OSAPI_SEMAPHORE_STATUS_ERROR;

constexpr QELNtpTime no_time = {0, 0};
constexpr QELNtpTime thirty_milliseconds = {0, 30 * QEL_NTP_TIME_FRAC_PER_MILLISECOND};

QELOsapiSemaphore* new_semaphore(QELOsapiSemaphoreKind kind, DDS_Long initial,
                                 DDS_Long wake_count = 0) {
    const QELOsapiSemaphoreProperty property = {initial, wake_count};
    return QELOsapiSemaphore_new(kind, &property);
}

void give(QELOsapiSemaphore* semaphore, int units) {
    for (int unit = 0; unit < units; ++unit) {
        EXPECT_EQ(QELOsapiSemaphore_give(semaphore), ok);
    }
}

void take(QELOsapiSemaphore* semaphore, int units) {
    for (int unit = 0; unit < units; ++unit) {
        EXPECT_EQ(QELOsapiSemaphore_take(semaphore, nullptr), ok);
    }
}

TEST(Semaphore, CountsToItsMaximumAndNoFurther) {
    QELOsapiSemaphore* counting = new_semaphore(QEL_OSAPI_SEMAPHORE_KIND_COUNTING, INT_MAX - 1);
    EXPECT_EQ(QELOsapiSemaphore_give(counting), ok);
    EXPECT_EQ(QELOsapiSemaphore_give(counting), error);
    EXPECT_EQ(QELOsapiSemaphore_take(counting, nullptr), ok);
    EXPECT_EQ(QELOsapiSemaphore_give(counting), ok);
    QELOsapiSemaphore_delete(counting);

    const struct {
        QELOsapiSemaphoreKind kind;
        QELOsapiSemaphoreStatus (*give)(QELOsapiSemaphore* semaphore);
    } single_units[] = {
        {QEL_OSAPI_SEMAPHORE_KIND_BINARY, QELOsapiSemaphore_give},
        {QEL_OSAPI_SEMAPHORE_KIND_COUNTING, QELOsapiSemaphore_giveIfEmpty},
    };
    for (const auto& each : single_units) {
        QELOsapiSemaphore* semaphore = new_semaphore(each.kind, 0);
        EXPECT_EQ(each.give(semaphore), ok);
        EXPECT_EQ(each.give(semaphore), ok);
        EXPECT_EQ(QELOsapiSemaphore_take(semaphore, nullptr), ok);
        EXPECT_EQ(QELOsapiSemaphore_take(semaphore, &no_time), timeout);
        QELOsapiSemaphore_delete(semaphore);
    }
    QELOsapiSemaphore* five = new_semaphore(QEL_OSAPI_SEMAPHORE_KIND_COUNTING, 5);
    for (const auto& [most, taken] : {std::pair(-1, 0), {0, 0}, {3, 3}, {3, 2}, {3, 0}}) {
        EXPECT_EQ(QELOsapiSemaphore_takeUpTo(five, most), taken);
    }
    QELOsapiSemaphore_delete(five);
    QELOsapiSemaphore* binary = new_semaphore(QEL_OSAPI_SEMAPHORE_KIND_BINARY, 1);
    EXPECT_EQ(QELOsapiSemaphore_takeUpTo(binary, 1), 0);
    EXPECT_EQ(QELOsapiSemaphore_takeUpTo(nullptr, 1), 0);
    QELOsapiSemaphore_delete(binary);
    EXPECT_EQ(new_semaphore(QEL_OSAPI_SEMAPHORE_KIND_COUNTING, -1), nullptr);
    EXPECT_EQ(new_semaphore(QEL_OSAPI_SEMAPHORE_KIND_BINARY, 2), nullptr);
    EXPECT_EQ(new_semaphore(0x0202000B, 0), nullptr);
}

TEST(Semaphore, WaitsAsLongAsItIsTold) {
    QELOsapiSemaphore* semaphore = new_semaphore(QEL_OSAPI_SEMAPHORE_KIND_COUNTING, 0);
    const Clock::time_point start = Clock::now();
    EXPECT_EQ(QELOsapiSemaphore_take(semaphore, &thirty_milliseconds), timeout);
    // A unit of that header's constant is a little less than a millisecond.
    EXPECT_GE(Clock::now() - start, milliseconds(29));
    EXPECT_LT(Clock::now() - start, milliseconds(5000));
    const timespec now = pexa::base::deadline_after(0, 0);
    const timespec later = pexa::base::deadline_after(0, 999'999'999);
    EXPECT_GE((later.tv_sec - now.tv_sec) * 1'000'000'000 + later.tv_nsec - now.tv_nsec,
              999'999'999);
    QELOsapiSemaphore_delete(semaphore);
}

TEST(Semaphore, GiveMakesNoSystemCallUnlessSomebodyWaits) {
    QELOsapiSemaphore* semaphore = new_semaphore(QEL_OSAPI_SEMAPHORE_KIND_COUNTING, 0);
    const int before = waits + naps + wakeups;
    give(semaphore, 100);
    take(semaphore, 100);
    EXPECT_EQ(waits + naps + wakeups, before);

    const int waits_before = waits;
    const int wakeups_before = wakeups;
    std::thread waiter([semaphore] { take(semaphore, 1); });
    while (waits == waits_before) {
        std::this_thread::yield();
    }
    give(semaphore, 1);
    waiter.join();
    EXPECT_EQ(wakeups, wakeups_before + 1);
    QELOsapiSemaphore_delete(semaphore);
}

TEST(Semaphore, GiveSparesATakerThatDozesUntilThereAreManyUnits) {
    constexpr int many = 8;
    QELOsapiSemaphore* semaphore = new_semaphore(QEL_OSAPI_SEMAPHORE_KIND_COUNTING, 1, many);
    take(semaphore, 1);
    for (const int units : {1, many - 1, many, 3 * many, 1}) {
        const int before = wakeups;
        instead_of_napping = [&] { give(semaphore, units); };
        take(semaphore, units);
        EXPECT_EQ(wakeups, before + (units < many ? 0 : 1)) << units << " units";
    }
    EXPECT_EQ(last_wakeup, last_nap);

    // Nobody dozes any more, neither after a unit was taken nor after a doze in vain.
    const int before = wakeups;
    give(semaphore, many);
    take(semaphore, many);
    instead_of_napping = [] {};
    const int before_doze = naps;
    EXPECT_EQ(QELOsapiSemaphore_take(semaphore, &thirty_milliseconds), timeout);
    const int after_doze = naps;
    EXPECT_EQ(after_doze, before_doze + 20);
    EXPECT_EQ(QELOsapiSemaphore_take(semaphore, &thirty_milliseconds), timeout);
    EXPECT_EQ(naps, after_doze) << "who dozed in vain sleeps until it is woken";
    instead_of_napping = nullptr;
    give(semaphore, many);
    EXPECT_EQ(wakeups, before);
    QELOsapiSemaphore_delete(semaphore);
}

TEST(Semaphore, EveryUnitGivenIsTakenOnce) {
    constexpr int givers = 2;
    constexpr int units_per_giver = 6000;
    constexpr int units = givers * units_per_giver;
    QELOsapiSemaphore* semaphore = new_semaphore(QEL_OSAPI_SEMAPHORE_KIND_COUNTING, 0, 2);
    std::atomic<int> wanted{units};
    std::atomic<int> taken{0};
    std::vector<std::jthread> threads;
    for (int taker = 0; taker < 3; ++taker) {
        // One waits for ever, the others keep running into their time-outs.
        threads.emplace_back([semaphore, &wanted, &taken, taker] {
            const QELNtpTime short_time = {0, 40000};
            const QELNtpTime* span = taker == 0 ? nullptr : &short_time;
            while (wanted.fetch_sub(1) > 0) {
                while (QELOsapiSemaphore_take(semaphore, span) == timeout) {
                }
                ++taken;
            }
        });
    }
    for (int giver = 0; giver < givers; ++giver) {
        threads.emplace_back([semaphore] { give(semaphore, units_per_giver); });
    }
    threads.clear();  // joins
    EXPECT_EQ(taken, units);
    EXPECT_EQ(QELOsapiSemaphore_take(semaphore, &no_time), timeout);
    QELOsapiSemaphore_delete(semaphore);
}

TEST(Semaphore, MutexBelongsToItsThreadUntilGivenAsOftenAsTaken) {
    QELOsapiSemaphore* mutex = QELOsapiSemaphore_new(QEL_OSAPI_SEMAPHORE_KIND_MUTEX, nullptr);
    const auto from_another_thread = [mutex](QELOsapiSemaphoreStatus expected) {
        std::thread([mutex, expected] {
            EXPECT_EQ(QELOsapiSemaphore_take(mutex, &no_time), expected);
            EXPECT_EQ(QELOsapiSemaphore_give(mutex), expected == ok ? ok : error);
        }).join();
    };
    EXPECT_EQ(QELOsapiSemaphore_give(mutex), error);
    EXPECT_EQ(QELOsapiSemaphore_take(mutex, nullptr), ok);
    EXPECT_EQ(QELOsapiSemaphore_take(mutex, &no_time), ok);
    from_another_thread(timeout);
    EXPECT_EQ(QELOsapiSemaphore_give(mutex), ok);
    from_another_thread(timeout);
    EXPECT_EQ(QELOsapiSemaphore_give(mutex), ok);
    from_another_thread(ok);
    EXPECT_EQ(QELOsapiSemaphore_give(mutex), error);
    QELOsapiSemaphore_delete(mutex);
}

TEST(Semaphore, MutexWakesWhoeverWaitsAndThatOneLooksAgainByItself) {
    QELOsapiSemaphore* mutex = new_semaphore(QEL_OSAPI_SEMAPHORE_KIND_MUTEX, 0);
    take(mutex, 1);
    const int waits_before = waits;
    const int timed_before = timed_waits;
    const int wakeups_before = wakeups;
    std::thread waiter([mutex] {
        take(mutex, 1);
        give(mutex, 1);
    });
    while (waits == waits_before) {
        std::this_thread::yield();
    }
    EXPECT_GT(timed_waits, timed_before);
    give(mutex, 1);
    EXPECT_GT(wakeups, wakeups_before);
    waiter.join();
    QELOsapiSemaphore_delete(mutex);
}

TEST(GlobalLock, IsGivenUpAfterTenMillisecondsInsideADeviceCall) {
    EXPECT_NE(QELOsapi_global_unlock(), 0) << "nobody has it";
    ASSERT_EQ(QELOsapi_global_lock(), 0);
    std::thread([] {
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
    }).join();
    ASSERT_EQ(QELOsapi_global_unlock(), 0);
}

TEST(GlobalLock, IsWaitedForBeyondTenMillisecondsUntilTheFlagIsRaised) {
    DDS_Long abandon = 0;
    std::atomic<bool> about_to_lock{false};
    std::atomic<bool> given_up{false};
    ASSERT_EQ(QELOsapi_global_lock(), 0);
    std::thread waiter([&] {
        about_to_lock = true;
        about_to_lock.notify_one();
        EXPECT_NE(QELOsapi_global_lockUnless(&abandon), 0);
        given_up = true;
    });
    about_to_lock.wait(false);
    std::this_thread::sleep_for(milliseconds(35));
    EXPECT_FALSE(given_up);
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

}  // namespace

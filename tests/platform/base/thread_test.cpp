#include <gtest/gtest.h>
#include <pthread.h>
#include <sched.h>
#include <unistd.h>

#include <fstream>
#include <string>

#include "pexa/osapi.h"
#include "tests/support/faults.hpp"
#include "tests/support/text.hpp"

namespace {

// What a thread sees of itself.
struct Seen {
    std::string name;
    int policy = -1;
    size_t stack_size = 0;
    cpu_set_t cpus{};
};

void* look(void* parameter) {
    auto* seen = static_cast<Seen*>(parameter);
    const DDS_UnsignedLong id = QELOsapiThread_getCurrentThreadID();
    std::ifstream comm("/proc/self/task/" + std::to_string(id) + "/comm");
    std::getline(comm, seen->name);
    seen->policy = sched_getscheduler(0);
    pthread_attr_t attributes;
    pthread_getattr_np(pthread_self(), &attributes);
    pthread_attr_getstacksize(&attributes, &seen->stack_size);
    pthread_attr_destroy(&attributes);
    sched_getaffinity(0, sizeof seen->cpus, &seen->cpus);
    return nullptr;
}

struct Settings {
    DDS_Long priority = QEL_OSAPI_THREAD_PRIORITY_DEFAULT;
    DDS_UnsignedLong options = QEL_OSAPI_THREAD_OPTION_DEFAULT;
    DDS_Long stack_size = QEL_OSAPI_THREAD_STACK_SIZE_DEFAULT;
    const uint64_t* cpus = nullptr;
    const char* name = "LogMessageWriteThread";
};

bool run(const Settings& settings, Seen& seen) {
    QELOsapiThread* thread = QELOsapiThread_new(settings.name, settings.priority, settings.options,
                                                settings.stack_size, settings.cpus, look, &seen);
    QELOsapiThread_delete(thread);
    return thread != nullptr;
}

TEST(Thread, ShowsItsNameAndHasAtLeastTheStackThatIsAsked) {
    for (const DDS_Long size : {0, 1, 300000, 32 * 1024 * 1024}) {
        Seen seen;
        ASSERT_TRUE(run({.stack_size = size}, seen)) << size;
        EXPECT_GE(seen.stack_size, static_cast<size_t>(size));
        EXPECT_EQ(seen.name, "LogMessageWrite") << "as much as the system shows";
    }
}

TEST(Thread, RunsOnTheCpusOfTheBitmapOnly) {
    cpu_set_t allowed;
    ASSERT_EQ(sched_getaffinity(0, sizeof allowed, &allowed), 0);
    size_t last = CPU_SETSIZE - 1;
    while (!CPU_ISSET(last, &allowed)) {
        --last;
    }
    uint64_t bitmap[16] = {};
    bitmap[last / 64] = uint64_t{1} << (last % 64);
    Seen seen;
    ASSERT_TRUE(run({.cpus = bitmap}, seen));
    EXPECT_EQ(CPU_COUNT(&seen.cpus), 1);
    EXPECT_TRUE(CPU_ISSET(last, &seen.cpus));

    const uint64_t none[16] = {};
    EXPECT_FALSE(run({.cpus = none}, seen));
}

TEST(Thread, FallsBackToTheDefaultPriorityUnlessItIsEnforced) {
    const DDS_UnsignedLong fifo = QEL_OSAPI_THREAD_OPTION_REALTIME_PRIORITY;
    // Whatever the privileges: no such priority exists.
    const Settings refused[] = {{.priority = 100, .options = fifo},
                                {.priority = -1, .options = fifo},
                                {.priority = 5, .options = 0}};
    orvane::test::Reports reports;
    for (Settings settings : refused) {
        Seen seen;
        EXPECT_TRUE(run(settings, seen));
        EXPECT_EQ(seen.policy, SCHED_OTHER);
        EXPECT_EQ(reports.take(),
                  std::vector<std::string>{"QELOsapiThread_new:could not set thread priority"});
        settings.options |= QEL_OSAPI_THREAD_OPTION_PRIORITY_ENFORCE;
        EXPECT_FALSE(run(settings, seen));
        EXPECT_TRUE(reports.take().empty());
    }
}

TEST(Thread, IsNotMadeOfBadArgumentsOrWithoutMemory) {
    Seen seen;
    EXPECT_FALSE(run({.name = nullptr}, seen));
    EXPECT_FALSE(run({.stack_size = -2}, seen));
    orvane::test::sweep(orvane::test::heap_allocation, [&seen] { return run({}, seen); });
}

TEST(Thread, IdOfAForkedProcessIsItsOwn) {
    const auto is_own = [] {
        return QELOsapiThread_getCurrentThreadID() == static_cast<DDS_UnsignedLong>(gettid());
    };
    ASSERT_TRUE(is_own());
    GTEST_FLAG_SET(death_test_style, "fast");  // It forks, and no more.
    EXPECT_EXIT(_exit(is_own() ? 0 : 1), testing::ExitedWithCode(0), "");
}

TEST(Sleep, RefusesOrReturnsAtOnceForWhatIsNoSpan) {
    const DDS_Duration_t negative = {-1, 0};
    const QELNtpTime negative_ntp = {-1, 0};
    QELOsapiThread_sleep(&negative_ntp);
    for (const DDS_Duration_t* span : {&negative, &DDS_DURATION_INFINITE}) {
        EXPECT_EQ(PEXA_Utility_sleep(span), DDS_RETCODE_BAD_PARAMETER);
    }
}

}  // namespace

#include <gtest/gtest.h>

#include <cstring>
#include <latch>
#include <set>
#include <thread>

#include "pexa/buffer_pool.h"
#include "pexa/osapi.h"
#include "pexa/type_plugin.h"
#include "tests/support/faults.hpp"

namespace {

constexpr DDS_Long unlimited = DDS_LENGTH_UNLIMITED;

TEST(BufferPool, LendsUpToItsMaximum) {
    const std::pair<MOSKFastBufferPoolProperty, size_t> cases[] = {
        {{4, 4, unlimited, 0}, 4}, {{0, 3, 1, 0}, 3}, {{0, 5, unlimited, 0}, 5},
        {{2, 7, 100, 1}, 7},       {{0, 0, 1, 0}, 0},
    };
    for (const auto& [property, lendable] : cases) {
        MOSKFastBufferPool* pool = MOSKFastBufferPool_new(12, 64, &property);
        ASSERT_NE(pool, nullptr);
        std::set<void*> lent;
        while (void* buffer = MOSKFastBufferPool_getBuffer(pool)) {
            std::memset(buffer, 0x5a, 12);
            EXPECT_EQ(reinterpret_cast<uintptr_t>(buffer) % 64, 0U);
            ASSERT_TRUE(lent.insert(buffer).second);
        }
        EXPECT_EQ(lent.size(), lendable);
        if (!lent.empty()) {
            MOSKFastBufferPool_returnBuffer(pool, *lent.begin());
            EXPECT_EQ(MOSKFastBufferPool_getBuffer(pool), *lent.begin());
            EXPECT_EQ(MOSKFastBufferPool_getBuffer(pool), nullptr);
        }
        MOSKFastBufferPool_delete(pool);
    }
}

TEST(BufferPool, RefusesWhatItCannotBeMadeOf) {
    const MOSKFastBufferPoolProperty wrong[] = {
        {-1, 4, 1, 0}, {5, 4, 1, 0}, {1, -2, 1, 0}, {1, 4, 0, 0}, {1, 4, -2, 0}};
    for (const MOSKFastBufferPoolProperty& property : wrong) {
        EXPECT_EQ(MOSKFastBufferPool_new(8, 8, &property), nullptr);
    }
    EXPECT_EQ(MOSKFastBufferPool_new(0, 8, nullptr), nullptr);
    EXPECT_EQ(MOSKFastBufferPool_new(8, 12, nullptr), nullptr);
    EXPECT_EQ(MOSKFastBufferPool_new(SIZE_MAX, 8, nullptr), nullptr);
    EXPECT_EQ(MOSKFastBufferPool_new(SIZE_MAX / 8, 8, nullptr), nullptr);
    EXPECT_EQ(MOSKFastBufferPool_getBuffer(nullptr), nullptr);
}

struct Calls {
    int initialized = 0;
    int finalized = 0;
    int failing = -1;
};

DDS_Boolean initialize(void* buffer, void* user_data) {
    auto& calls = *static_cast<Calls*>(user_data);
    std::memcpy(buffer, "made", 5);
    const bool fails = calls.initialized == calls.failing;
    calls.initialized += fails ? 0 : 1;
    return fails ? DDS_BOOLEAN_FALSE : DDS_BOOLEAN_TRUE;
}

void finalize(void* buffer, void* user_data) {
    EXPECT_STREQ(static_cast<char*>(buffer), "made");
    ++static_cast<Calls*>(user_data)->finalized;
}

TEST(BufferPool, MakesAndEndsTheContentOfEachBufferOnce) {
    Calls calls;
    const MOSKFastBufferPoolProperty property = {2, unlimited, 3, 0};
    MOSKFastBufferPool* pool =
        MOSKFastBufferPool_newWithCallbacks(5, 1, &property, initialize, finalize, &calls);
    MOSKFastBufferPool_returnBuffer(pool, MOSKFastBufferPool_getBuffer(pool));
    calls.failing = 7;
    for (const int made : {2, 2, 5, 5, 5}) {
        EXPECT_STREQ(static_cast<char*>(MOSKFastBufferPool_getBuffer(pool)), "made");
        EXPECT_EQ(calls.initialized, made);
    }
    EXPECT_EQ(MOSKFastBufferPool_getBuffer(pool), nullptr);
    EXPECT_EQ(calls.finalized, 2);
    MOSKFastBufferPool_delete(pool);
    EXPECT_EQ(calls.finalized, calls.initialized);
}

TEST(BufferPool, SerialisesItselfWhenAsked) {
    const MOSKFastBufferPoolProperty property = {1, unlimited, 1, 1};
    MOSKFastBufferPool* pool = MOSKFastBufferPool_new(sizeof(int), 4, &property);
    std::latch ready(2);
    const auto use = [pool, &ready](int own) {
        ready.arrive_and_wait();
        for (int round = 0; round < 30'000; ++round) {
            auto* number = static_cast<volatile int*>(MOSKFastBufferPool_getBuffer(pool));
            ASSERT_NE(number, nullptr);
            for (int reading = 0; reading < 2; ++reading) {
                *number = own;
                ASSERT_EQ(*number, own) << "lent to two threads";
            }
            MOSKFastBufferPool_returnBuffer(pool, const_cast<int*>(number));
        }
    };
    std::thread other(use, 1);
    use(2);
    other.join();
    MOSKFastBufferPool_delete(pool);
}

void* create_record() {
    return QELOsapiHeap_allocateStructureOfSize(16);
}

TEST(EndpointData, LendsSamplesUpToItsMaximumAndFreesThemAll) {
    const long before = orvane::test::live_blocks();
    for (const auto& [maximal, lendable] : {std::pair(20, 20U), std::pair(1, 1U)}) {
        const TULVEndpointInfo info = {TULV_ENDPOINT_WRITER, 1, maximal};
        TULVEndpointData data = TULVTypePluginDefaultEndpointData_new(
            nullptr, &info, create_record, QELOsapiHeap_freeStructureBytes, create_record,
            QELOsapiHeap_freeStructureBytes);
        ASSERT_NE(data, nullptr);
        std::set<void*> lent;
        for (int count = 0; count < 30; ++count) {
            lent.insert(TULVTypePluginDefaultEndpointData_getSample(data, nullptr));
        }
        lent.erase(nullptr);
        EXPECT_EQ(lent.size(), lendable);
        for (void* sample : lent) {
            TULVTypePluginDefaultEndpointData_returnSample(data, sample, nullptr);
        }
        TULVTypePluginDefaultEndpointData_returnSample(data, *lent.begin(), nullptr);
        for (std::size_t again = 0; again < lendable; ++again) {
            EXPECT_TRUE(lent.contains(TULVTypePluginDefaultEndpointData_getSample(data, nullptr)));
        }
        EXPECT_EQ(TULVTypePluginDefaultEndpointData_getSample(data, nullptr), nullptr);
        void* foreign = TULVTypePluginDefaultEndpointData_createSample(data);
        EXPECT_FALSE(lent.contains(foreign));
        TULVTypePluginDefaultEndpointData_deleteSample(data, foreign);
        void* key = TULVTypePluginDefaultEndpointData_getKey(data, nullptr);
        EXPECT_NE(TULVTypePluginDefaultEndpointData_getKey(data, nullptr), key);
        TULVTypePluginDefaultEndpointData_returnKey(data, key, nullptr);
        EXPECT_EQ(TULVTypePluginDefaultEndpointData_getKey(data, nullptr), key);
        TULVTypePluginDefaultEndpointData_delete(data);
        EXPECT_EQ(orvane::test::live_blocks(), before);
    }
}

}  // namespace

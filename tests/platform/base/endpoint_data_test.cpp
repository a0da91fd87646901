#include <gtest/gtest.h>

#include <cstring>
#include <set>

#include "pexa/osapi.h"
#include "pexa/type_plugin.h"
#include "tests/support/heap_faults.hpp"

namespace {

void* create_record() {
    return QELOsapiHeap_allocateStructureOfSize(16);
}

DDS_UnsignedLong size_of_100(TULVEndpointData, DDS_Boolean with_encapsulation,
                             DDS_UnsignedShort encapsulation, DDS_UnsignedLong alignment) {
    EXPECT_EQ(with_encapsulation, 1);
    EXPECT_EQ(encapsulation, QEL_CDR_ENCAPSULATION_ID_CDR_LE);
    EXPECT_EQ(alignment, 0U);
    return 100;
}

TULVEndpointData new_endpoint(DDS_Long initial, DDS_Long maximal, bool has_key) {
    const TULVEndpointInfo info = {TULV_ENDPOINT_WRITER, initial, maximal};
    return TULVTypePluginDefaultEndpointData_new(
        nullptr, &info, create_record, QELOsapiHeap_freeStructureBytes,
        has_key ? create_record : nullptr, has_key ? QELOsapiHeap_freeStructureBytes : nullptr);
}

TEST(EndpointData, LendsSamplesUpToItsMaximumAndFreesThemAll) {
    const long before = heap_faults::live_blocks();
    struct Case {
        DDS_Long initial;
        DDS_Long maximal;
        size_t lendable;
    };
    for (const Case& item : {Case{2, 20, 20}, Case{0, 1, 1}, Case{3, DDS_LENGTH_UNLIMITED, 50}}) {
        TULVEndpointData data = new_endpoint(item.initial, item.maximal, true);
        ASSERT_NE(data, nullptr);
        std::set<void*> lent;
        for (int count = 0; count < 50; ++count) {
            lent.insert(TULVTypePluginDefaultEndpointData_getSample(data, nullptr));
        }
        lent.erase(nullptr);
        EXPECT_EQ(lent.size(), item.lendable);
        EXPECT_FALSE(lent.contains(TULVTypePluginDefaultEndpointData_getTempSample(data)));
        TULVTypePluginDefaultEndpointData_returnSample(data, *lent.begin(), nullptr);
        EXPECT_EQ(TULVTypePluginDefaultEndpointData_getSample(data, nullptr), *lent.begin());
        void* foreign = TULVTypePluginDefaultEndpointData_createSample(data);
        EXPECT_FALSE(lent.contains(foreign));
        TULVTypePluginDefaultEndpointData_deleteSample(data, foreign);
        void* key = TULVTypePluginDefaultEndpointData_getKey(data, nullptr);
        EXPECT_NE(TULVTypePluginDefaultEndpointData_getKey(data, nullptr), key);
        TULVTypePluginDefaultEndpointData_returnKey(data, key, nullptr);
        EXPECT_EQ(TULVTypePluginDefaultEndpointData_getKey(data, nullptr), key);
        TULVTypePluginDefaultEndpointData_delete(data);
        EXPECT_EQ(heap_faults::live_blocks(), before);
    }
}

TEST(EndpointData, HasStreamAndBuffersOnceTheyAreMade) {
    TULVEndpointData keyless = new_endpoint(0, 1, false);
    EXPECT_EQ(TULVTypePluginDefaultEndpointData_getKey(keyless, nullptr), nullptr);
    TULVTypePluginDefaultEndpointData_delete(keyless);
    TULVEndpointData data = new_endpoint(1, 1, true);
    size_t size = 7;
    EXPECT_EQ(TULVTypePluginDefaultEndpointData_getMD5Stream(data), nullptr);
    EXPECT_EQ(TULVTypePluginDefaultEndpointData_getBuffer(data, &size), nullptr);
    EXPECT_EQ(size, 0U);

    ASSERT_EQ(TULVTypePluginDefaultEndpointData_createMD5Stream(data, 28), 1);
    const QELCdrStream* stream = TULVTypePluginDefaultEndpointData_getMD5Stream(data);
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(QELCdrStream_remaining(stream), 28U);

    ASSERT_EQ(TULVTypePluginDefaultEndpointData_createWriterPool(data, size_of_100), 1);
    char* buffer = TULVTypePluginDefaultEndpointData_getBuffer(data, &size);
    char* second = TULVTypePluginDefaultEndpointData_getBuffer(data, &size);
    ASSERT_NE(buffer, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(size, 100U);
    std::memset(buffer, 0, size);
    std::memset(second, 0, size);
    TULVTypePluginDefaultEndpointData_returnBuffer(data, buffer);
    EXPECT_EQ(TULVTypePluginDefaultEndpointData_getBuffer(data, &size), buffer);

    TULVTypePluginDefaultEndpointData_setMaxSizeSerializedSample(data, 4700);
    EXPECT_EQ(TULVTypePluginDefaultEndpointData_getMaxSizeSerializedSample(data), 4700U);
    TULVTypePluginDefaultEndpointData_delete(data);
}

TEST(EndpointData, SurvivesEveryFailingAllocation) {
    heap_faults::sweep([] {
        TULVParticipantData participant = TULVTypePluginDefaultParticipantData_new();
        TULVEndpointData data = new_endpoint(9, 12, true);
        size_t size = 0;
        bool complete =
            participant != nullptr && data != nullptr &&
            TULVTypePluginDefaultEndpointData_createMD5Stream(data, 28) != 0 &&
            TULVTypePluginDefaultEndpointData_createWriterPool(data, size_of_100) != 0 &&
            TULVTypePluginDefaultEndpointData_getBuffer(data, &size) != nullptr &&
            TULVTypePluginDefaultEndpointData_getBuffer(data, &size) != nullptr;
        for (int count = 0; complete && count < 12; ++count) {
            complete = TULVTypePluginDefaultEndpointData_getSample(data, nullptr) != nullptr;
        }
        TULVTypePluginDefaultEndpointData_delete(data);
        TULVTypePluginDefaultParticipantData_delete(participant);
        return complete;
    });
}

}  // namespace

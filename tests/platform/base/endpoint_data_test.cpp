#include <gtest/gtest.h>

#include <set>

#include "pexa/osapi.h"
#include "pexa/type_plugin.h"
#include "tests/support/faults.hpp"

namespace {

void* create_record() {
    return QELOsapiHeap_allocateStructureOfSize(16);
}

DDS_UnsignedLong size_of_100(TULVEndpointData, DDS_Boolean, DDS_UnsignedShort, DDS_UnsignedLong) {
    return 100;
}

TULVEndpointData new_endpoint(DDS_Long initial, DDS_Long maximal) {
    const TULVEndpointInfo info = {TULV_ENDPOINT_WRITER, initial, maximal};
    return TULVTypePluginDefaultEndpointData_new(nullptr, &info, create_record,
                                                 QELOsapiHeap_freeStructureBytes, create_record,
                                                 QELOsapiHeap_freeStructureBytes);
}

TEST(EndpointData, LendsSamplesUpToItsMaximumAndFreesThemAll) {
    const long before = orvane::test::live_blocks();
    for (const auto& [maximal, lendable] : {std::pair(20, 20U), std::pair(1, 1U)}) {
        TULVEndpointData data = new_endpoint(1, maximal);
        ASSERT_NE(data, nullptr);
        std::set<void*> lent;
        for (int count = 0; count < 30; ++count) {
            lent.insert(TULVTypePluginDefaultEndpointData_getSample(data, nullptr));
        }
        lent.erase(nullptr);
        EXPECT_EQ(lent.size(), lendable);
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
        EXPECT_EQ(orvane::test::live_blocks(), before);
    }
}

TEST(EndpointData, SurvivesEveryFailingAllocation) {
    orvane::test::sweep(orvane::test::heap_allocation, [] {
        TULVParticipantData participant = TULVTypePluginDefaultParticipantData_new();
        TULVEndpointData data = new_endpoint(9, 12);
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

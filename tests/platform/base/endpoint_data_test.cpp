#include <gtest/gtest.h>

#include <set>

#include "pexa/osapi.h"
#include "pexa/type_plugin.h"
#include "tests/support/faults.hpp"

namespace {

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

}  // namespace

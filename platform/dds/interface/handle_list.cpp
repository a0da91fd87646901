#include "platform/dds/interface/handle_list.hpp"

namespace pexa::dds {

DDS_ReturnCode_t store_handles(const std::vector<engine::LocalHandle>& peers,
                               DDS_InstanceHandleSeq& handles, const PeerLookup& lookup) {
    const auto count = static_cast<DDS_Long>(peers.size());
    if (DDS_InstanceHandleSeq_ensure_length(&handles, count, count) == 0) {
        return DDS_RETCODE_OUT_OF_RESOURCES;
    }
    for (DDS_Long i = 0; i < count; ++i) {
        *DDS_InstanceHandleSeq_get_reference(&handles, i) =
            lookup(peers[static_cast<std::size_t>(i)]);
    }
    return DDS_RETCODE_OK;
}

}  // namespace pexa::dds

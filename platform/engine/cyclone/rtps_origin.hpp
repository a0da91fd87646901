/// @file rtps_origin.hpp
/// @brief Reads from an RTPS message who wrote a sample in it, and the sequence number.
///
/// Cyclone keeps a message as long as it makes samples of it. It has then checked all submessages
/// up to that of the sample, and put the numbers in their headers and the identities of the
/// writers, as well as the prefix in the header of the message, into the host's byte order, in
/// place. What else INFO_SRC says stays as it was sent. A message that was signed or encrypted as a
/// whole begins with an INFO_SRC, and the prefix in its header stays as it was sent, too.
#pragma once

#include <arpa/inet.h>
#include <dds/ddsi/ddsi_vendor.h>
#include <dds/ddsi/q_misc.h>
#include <dds/ddsi/q_radmin.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "platform/engine/type.hpp"

namespace pexa::engine::cyclone {

/// @param place need not be aligned
template <typename Record>
Record read_record(const unsigned char* place) {
    Record record;
    std::memcpy(&record, place, sizeof record);
    return record;
}

/// @return the prefix that the GUID of a writer has, in the host's byte order
/// @param submessage where in the message the submessage of the writer begins
inline ddsi_guid_prefix_t source_prefix(const unsigned char* message, std::size_t submessage) {
    const auto header = read_record<Header_t>(message);
    ddsi_guid_prefix_t prefix = header.guid_prefix;
    // Cyclone speaks for itself only. That spares its large batches the walk beyond the begin.
    const std::size_t end =
        vendor_is_eclipse(header.vendorid) ? std::min(submessage, sizeof header + 1) : submessage;
    for (std::size_t at = sizeof header; at < end;) {
        const auto passed = read_record<SubmessageHeader_t>(message + at);
        if (passed.submessageId == SMID_INFO_SRC) {
            prefix = read_record<InfoSRC_t>(message + at).guid_prefix;
            std::ranges::transform(prefix.u, prefix.u, ntohl);
        }
        at += sizeof passed + passed.octetsToNextHeader;
    }
    return prefix;
}

/// @param fragment the first one of a sample
inline SampleOrigin origin_of(const nn_rdata& fragment) {
    const unsigned char* const message = NN_RMSG_PAYLOAD(fragment.rmsg);
    const std::size_t submessage = NN_RDATA_SUBMSG_OFF(&fragment);
    const auto data = read_record<Data_DataFrag_common_t>(message + submessage);
    const ddsi_guid_prefix_t prefix = source_prefix(message, submessage);
    const std::array writer{htonl(prefix.u[0]), htonl(prefix.u[1]), htonl(prefix.u[2]),
                            htonl(data.writerId.u)};
    SampleOrigin origin;
    static_assert(sizeof writer == sizeof origin.writer);
    std::memcpy(origin.writer.data(), writer.data(), sizeof writer);
    origin.sequence_number = static_cast<std::int64_t>(fromSN(data.writerSN));
    return origin;
}

}  // namespace pexa::engine::cyclone

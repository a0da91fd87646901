/// @file receive_threads.hpp
/// @brief Ends the threads on which Cyclone receives when the network interface is gone.
///
/// Two threads of a domain sleep in the socket that they read. To end them Cyclone sends a datagram
/// to each through the domain's interface. If that interface has disappeared, none arrives, and the
/// deletion of the domain's last participant waits for ever. The sockets listen on all interfaces,
/// so a datagram on the loopback interface wakes them, too.
#pragma once

#include <dds/dds.h>

#include <array>
#include <cstdint>

#include "platform/engine/cyclone/domain_record.h"
#include "platform/engine/cyclone/entity_table.hpp"

namespace pexa::engine::cyclone {

/// Where a domain's threads can be woken.
struct Receivers {
    std::array<CycloneReceiver, pexa_cyclone_max_receivers> all{};
    std::uint32_t count = 0;
};

/// Notes how the threads of a participant's domain can be woken. Has its room before there is the
/// participant.
class ReceiversNote {
public:
    ReceiversNote() : receivers_(std::make_shared<Receivers>()), entry_(receivers_) {}

    /// To be called once, by the thread that has just created the participant.
    void write(dds_entity_t participant, dds_domainid_t domain) noexcept;

private:
    std::shared_ptr<Receivers> receivers_;
    EntityTable<const Receivers>::Entry entry_;
};

/// dds_delete() of a participant. Wakes the threads as long as the deletion waits.
dds_return_t delete_participant(dds_entity_t participant);

}  // namespace pexa::engine::cyclone

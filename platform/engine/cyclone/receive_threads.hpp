/// @file receive_threads.hpp
/// @brief Ends the threads on which Cyclone receives when the network interface is gone.
///
/// Two threads of a domain sleep in the socket that they read. To end them Cyclone sends a datagram
/// to each through the domain's interface. If that interface has disappeared, none arrives, and the
/// deletion of the domain's last participant waits for ever. The sockets listen on all interfaces,
/// so a datagram on the loopback interface wakes them, too.
#pragma once

#include <dds/dds.h>

namespace pexa::engine::cyclone {

/// Notes how the threads of the domain can be woken. To be called by the thread that has just
/// created the participant.
void note_receive_threads(dds_entity_t participant, dds_domainid_t domain);

/// dds_delete() of a participant. Wakes the threads as long as the deletion waits.
dds_return_t delete_participant(dds_entity_t participant);

}  // namespace pexa::engine::cyclone

/* The record that Cyclone keeps of a domain. In C because Cyclone's header for it is not valid C++.
 */
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

struct ddsi_domaingv;

void pexa_cyclone_store_trace_mask(struct ddsi_domaingv* domain, uint32_t mask);

/* Switches on that writers of the domain batch. Returns what was set before. */
int pexa_cyclone_begin_batching(struct ddsi_domaingv* domain);
/* Puts back what was set before, unless the application has set the switch meanwhile. */
void pexa_cyclone_end_batching(struct ddsi_domaingv* domain, int before);

/* A UDP socket on which a thread of Cyclone waits. */
struct CycloneReceiver {
    unsigned char group[4]; /* all zero when it is not for multicast */
    uint16_t port;
};
enum { pexa_cyclone_max_receivers = 3 };

/* Finds the sockets of the domain in which this thread has created a participant just now that have
   a thread of their own. Returns their number. Those of IPv6 are left out. */
uint32_t pexa_cyclone_receivers(uint32_t domain_id,
                                struct CycloneReceiver receivers[pexa_cyclone_max_receivers]);

#ifdef __cplusplus
}
#endif

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

#ifdef __cplusplus
}
#endif

#include "platform/engine/cyclone/domain_record.h"

#include <dds/ddsi/ddsi_domaingv.h>

#define HAS_TYPE(expression, type) _Generic((expression), type : 1, default : 0)
#define RECORD ((struct ddsi_domaingv*)0)
_Static_assert(HAS_TYPE(RECORD->logconfig.c.mask, uint32_t), "the log categories");
_Static_assert(HAS_TYPE(RECORD->config.whc_batch, int), "the switch for batching");

void pexa_cyclone_store_trace_mask(struct ddsi_domaingv* domain, uint32_t mask) {
    struct ddsrt_log_cfg_common* const log = &domain->logconfig.c;
    const uint32_t traces = mask & DDS_TRACE_MASK;
    /* Cyclone's threads read these without a lock. */
    __atomic_store_n(&log->tracemask, traces, __ATOMIC_RELAXED);
    __atomic_store_n(&log->mask, traces | DDS_LOG_MASK, __ATOMIC_RELAXED);
}

/* Any value but 0 is on. This one tells our setting from the application's. */
static const int our_batching = 2;

int pexa_cyclone_begin_batching(struct ddsi_domaingv* domain) {
    return __atomic_exchange_n(&domain->config.whc_batch, our_batching, __ATOMIC_RELAXED);
}

void pexa_cyclone_end_batching(struct ddsi_domaingv* domain, int before) {
    int expected = our_batching;
    __atomic_compare_exchange_n(&domain->config.whc_batch, &expected, before, 0, __ATOMIC_RELAXED,
                                __ATOMIC_RELAXED);
}

/* In C because Cyclone's header for a domain's record is not valid C++. */
#include <dds/ddsi/ddsi_domaingv.h>

void pexa_cyclone_store_trace_mask(struct ddsi_domaingv* domain, uint32_t mask);

void pexa_cyclone_store_trace_mask(struct ddsi_domaingv* domain, uint32_t mask) {
    struct ddsrt_log_cfg_common* const log = &domain->logconfig.c;
    const uint32_t traces = mask & DDS_TRACE_MASK;
    /* Cyclone's threads read these without a lock. */
    __atomic_store_n(&log->tracemask, traces, __ATOMIC_RELAXED);
    __atomic_store_n(&log->mask, traces | DDS_LOG_MASK, __ATOMIC_RELAXED);
}

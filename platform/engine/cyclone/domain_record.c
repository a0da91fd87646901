#include "platform/engine/cyclone/domain_record.h"

#include <dds/ddsi/ddsi_domaingv.h>
#include <dds/ddsi/q_thread.h>
#include <string.h>

#define HAS_TYPE(expression, type) _Generic((expression), type : 1, default : 0)
#define RECORD ((struct ddsi_domaingv*)0)
_Static_assert(HAS_TYPE(RECORD->logconfig.c.mask, uint32_t), "the log categories");
_Static_assert(HAS_TYPE(RECORD->config.whc_batch, int), "the switch for batching");
_Static_assert(HAS_TYPE(RECORD->recv_threads[0].arg.u.single.loc, const ddsi_locator_t*),
               "the address at which a thread receives");
_Static_assert(MAX_RECV_THREADS <= pexa_cyclone_max_receivers, "the threads that receive");

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

uint32_t pexa_cyclone_receivers(uint32_t domain_id,
                                struct CycloneReceiver receivers[pexa_cyclone_max_receivers]) {
    const struct ddsi_domaingv* const domain = ddsrt_atomic_ldvoidp(&lookup_thread_state()->gv);
    uint32_t count = 0;
    if (domain == NULL || domain->config.domainId != domain_id) {
        return 0;
    }
    for (uint32_t i = 0; i < domain->n_recv_threads; ++i) {
        const struct recv_thread_arg* const thread = &domain->recv_threads[i].arg;
        if (thread->mode != RTM_SINGLE || thread->u.single.loc->kind != NN_LOCATOR_KIND_UDPv4) {
            continue;
        }
        struct CycloneReceiver* const receiver = &receivers[count++];
        const unsigned char* const address = &thread->u.single.loc->address[12];
        const int is_multicast = address[0] >= 224 && address[0] <= 239;
        memset(receiver, 0, sizeof *receiver);
        receiver->port = (uint16_t)thread->u.single.loc->port;
        if (is_multicast) {
            memcpy(receiver->group, address, sizeof receiver->group);
        }
    }
    return count;
}

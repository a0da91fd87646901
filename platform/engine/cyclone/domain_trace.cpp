#include "platform/engine/cyclone/domain_trace.hpp"

#include <mutex>
#include <optional>
#include <unordered_set>

#include "platform/engine/cyclone/domain_record.h"

namespace pexa::engine::cyclone {

namespace {

// Held while a domain's record is written, so that a type, and with it its domain, cannot go away
// meanwhile. Cyclone calls in with locks held, therefore nothing calls Cyclone under it.
struct TracedTypes {
    std::mutex mutex;
    std::unordered_set<const ddsi_sertype*> types;
    // Empty until somebody chooses; the configuration decides so long.
    std::optional<std::uint32_t> mask;
};

TracedTypes& traced_types() {
    // Never destroyed: Cyclone's threads may free types until the process ends.
    static auto* const traced = new TracedTypes;
    return *traced;
}

void store_mask(const ddsi_sertype* type, std::uint32_t mask) {
    void* const domain = ddsrt_atomic_ldvoidp(&type->gv);
    pexa_cyclone_store_trace_mask(static_cast<ddsi_domaingv*>(domain), mask);
}

}  // namespace

void follow_trace_mask(const ddsi_sertype* type) {
    TracedTypes& traced = traced_types();
    const std::lock_guard lock(traced.mutex);
    traced.types.insert(type);
    if (traced.mask) {
        store_mask(type, *traced.mask);
    }
}

void forget_domain_of(const ddsi_sertype* type) {
    TracedTypes& traced = traced_types();
    const std::lock_guard lock(traced.mutex);
    traced.types.erase(type);
}

void set_trace_mask(std::uint32_t mask) {
    TracedTypes& traced = traced_types();
    const std::lock_guard lock(traced.mutex);
    traced.mask = mask;
    for (const ddsi_sertype* const type : traced.types) {
        store_mask(type, mask);
    }
}

}  // namespace pexa::engine::cyclone

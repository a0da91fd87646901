#include "platform/engine/cyclone/domain_trace.hpp"

#include <mutex>
#include <optional>
#include <unordered_set>

#include "platform/engine/cyclone/domain_record.h"
#include "platform/engine/cyclone/never_destroyed.hpp"

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
    static NeverDestroyed<TracedTypes> traced;
    return traced.get();
}

void store_mask(const ddsi_sertype* type, std::uint32_t mask) {
    // Not yet registered, a type has no domain.
    if (void* const domain = ddsrt_atomic_ldvoidp(&type->gv)) {
        pexa_cyclone_store_trace_mask(static_cast<ddsi_domaingv*>(domain), mask);
    }
}

}  // namespace

void note_type(const ddsi_sertype* type) {
    TracedTypes& traced = traced_types();
    const std::lock_guard lock(traced.mutex);
    traced.types.insert(type);
}

void follow_trace_mask(const ddsi_sertype* type) {
    TracedTypes& traced = traced_types();
    const std::lock_guard lock(traced.mutex);
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

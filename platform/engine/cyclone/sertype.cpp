#include "platform/engine/cyclone/sertype.hpp"

#include <dds/ddsrt/heap.h>

#include <atomic>
#include <cstdlib>
#include <mutex>
#include <unordered_map>

#include "platform/engine/cyclone/domain_trace.hpp"
#include "platform/engine/cyclone/never_destroyed.hpp"
#include "platform/engine/cyclone/serdata.hpp"
#include "platform/engine/cyclone/writer_batching.hpp"

namespace pexa::engine::cyclone {

namespace {

struct KnownTypes {
    std::mutex mutex;
    std::unordered_map<const Type*, std::weak_ptr<SharedType>> types;
};

KnownTypes& known_types() {
    static NeverDestroyed<KnownTypes> known;
    return known.get();
}

std::uint64_t next_number() {
    static std::atomic<std::uint64_t> number{0};
    return ++number;
}

extern "C" {

void free_sertype(ddsi_sertype* type) {
    forget_domain_of(type);
    ddsi_sertype_fini(type);
    delete static_cast<Sertype*>(type);
}

void zero_samples(const ddsi_sertype*, void* samples, size_t count) {
    auto* const views = static_cast<SampleView*>(samples);
    for (size_t i = 0; i < count; ++i) {
        views[i] = SampleView{};
    }
}

void realloc_samples(void** pointers, const ddsi_sertype*, void* old, size_t old_count,
                     size_t count) {
    auto* const views = static_cast<SampleView*>(ddsrt_realloc(old, count * sizeof(SampleView)));
    for (size_t i = old_count; i < count; ++i) {
        new (&views[i]) SampleView;
    }
    for (size_t i = 0; i < count; ++i) {
        pointers[i] = &views[i];
    }
}

void free_samples(const ddsi_sertype*, void** pointers, size_t count, dds_free_op_t operation) {
    if (count > 0 && (operation & DDS_FREE_ALL_BIT) != 0) {
        ddsrt_free(pointers[0]);
    }
}

bool equal(const ddsi_sertype* a, const ddsi_sertype* b) {
    return &shared_of(a) == &shared_of(b);
}

uint32_t hash(const ddsi_sertype* type) {
    return static_cast<uint32_t>(shared_of(type).number());
}

// The one representation serves every endpoint; Cyclone counts the use by itself. For a new writer
// it asks right after it has looked whether the writer batches.
ddsi_sertype* derive(const ddsi_sertype* base, dds_data_representation_id_t representation,
                     dds_type_consistency_enforcement_qospolicy_t) {
    end_batching_window();
    return representation == DDS_DATA_REPRESENTATION_XCDR1 ? const_cast<ddsi_sertype*>(base)
                                                           : nullptr;
}

// Only asked for shared memory transport, which needs a description of the sample's layout.
size_t serialized_size(const ddsi_sertype*, const void*) {
    return SIZE_MAX;
}
bool serialize_into(const ddsi_sertype*, const void*, void*, size_t) {
    return false;
}

}  // extern "C"

constexpr ddsi_sertype_ops sertype_ops = {
    .version = ddsi_sertype_v0,
    .arg = nullptr,
    .free = free_sertype,
    .zero_samples = zero_samples,
    .realloc_samples = realloc_samples,
    .free_samples = free_samples,
    .equal = equal,
    .hash = hash,
    .type_id = nullptr,
    .type_map = nullptr,
    .type_info = nullptr,
    .derive_sertype = derive,
    .get_serialized_size = serialized_size,
    .serialize_into = serialize_into,
};

}  // namespace

SharedType::SharedType(std::shared_ptr<const Type> type)
    : type_(std::move(type)),
      keyed_(type_->keyed()),
      number_(next_number()),
      instances_(std::make_shared<InstanceIndex>()) {}

SharedType::~SharedType() {
    KnownTypes& known = known_types();
    const std::lock_guard lock(known.mutex);
    const auto found = known.types.find(type_.get());
    // Another one may have been made for the same object while this one was dying.
    if (found != known.types.end() && found->second.expired()) {
        known.types.erase(found);
    }
}

std::shared_ptr<SharedType> SharedType::of(std::shared_ptr<const Type> type) {
    const Type* const key = type.get();
    // Outlives the lock, which its destruction takes.
    auto made = std::make_shared<SharedType>(std::move(type));
    KnownTypes& known = known_types();
    const std::lock_guard lock(known.mutex);
    std::weak_ptr<SharedType>& entry = known.types[key];
    std::shared_ptr<SharedType> shared = entry.lock();
    if (!shared) {
        shared = made;
        entry = made;
    }
    return shared;
}

ddsi_sertype* make_sertype(std::shared_ptr<SharedType> shared) {
    auto sertype = std::make_unique<Sertype>();
    note_type(sertype.get());
    const uint32_t flags = shared->keyed() ? 0 : DDSI_SERTYPE_FLAG_TOPICKIND_NO_KEY;
    ddsi_sertype_init_flags(sertype.get(), shared->type().name(), &sertype_ops, &serdata_ops,
                            flags);
    sertype->allowed_data_representation = DDS_DATA_REPRESENTATION_FLAG_XCDR1;
    sertype->shared = std::move(shared);
    return sertype.release();
}

}  // namespace pexa::engine::cyclone

#include <dds/dds.h>
#include <dds/ddsrt/sync.h>
#include <dds/ddsrt/time.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <ctime>

#include "platform/engine/cyclone/entity_records.hpp"
#include "platform/engine/cyclone/guarded.hpp"
#include "platform/engine/cyclone/results.hpp"
#include "platform/engine/cyclone/state_masks.hpp"
#include "platform/engine/cyclone/statuses.hpp"
#include "platform/engine/engine.hpp"

namespace pexa::engine {

namespace {

using cyclone::created;
using cyclone::status_of;

// Cyclone refuses masks with statuses that the entity does not have.
StatusMask statuses_of(EntityId entity) {
    if (cyclone::readers().find(entity)) {
        return cyclone::reader_statuses;
    }
    if (cyclone::writers().find(entity)) {
        return cyclone::writer_statuses;
    }
    if (cyclone::topics().find(entity)) {
        return cyclone::topic_statuses;
    }
    std::uint32_t unused = 0;
    const std::uint32_t of_subscriber =
        cyclone::to_cyclone_status_mask(cyclone::subscriber_statuses);
    return dds_read_status(entity, &unused, of_subscriber) == DDS_RETCODE_OK
               ? cyclone::subscriber_statuses
               : 0;
}

}  // namespace

Created create_read_condition(EntityId reader, const StateMask& states) noexcept {
    const std::uint32_t mask = cyclone::to_cyclone(states);
    if (mask == 0) {
        return {Status::bad_parameter, no_entity};
    }
    return created(dds_create_readcondition(reader, mask));
}

Created create_guard_condition() noexcept {
    return created(dds_create_guardcondition(DDS_CYCLONEDDS_HANDLE));
}

Status set_guard_condition(EntityId condition, bool triggered) noexcept {
    return status_of(dds_set_guardcondition(condition, triggered));
}

Status set_status_condition(EntityId entity, StatusMask mask) noexcept {
    const StatusMask possible = mask & statuses_of(entity);
    return status_of(dds_set_status_mask(entity, cyclone::to_cyclone_status_mask(possible)));
}

bool is_triggered(EntityId condition) noexcept {
    return dds_triggered(condition) > 0;
}

Created create_wait_set() noexcept {
    return created(dds_create_waitset(DDS_CYCLONEDDS_HANDLE));
}

Status attach(EntityId wait_set, EntityId condition) noexcept {
    return status_of(dds_waitset_attach(wait_set, condition, condition));
}

Status detach(EntityId wait_set, EntityId condition) noexcept {
    return status_of(dds_waitset_detach(wait_set, condition));
}

Status wait(EntityId wait_set, Nanoseconds timeout, std::vector<EntityId>& triggered) noexcept {
    triggered.clear();
    const dds_return_t attached = dds_waitset_get_entities(wait_set, nullptr, 0);
    if (attached < 0) {
        return status_of(attached);
    }
    return cyclone::guarded([&] {
        // One place more than needed: a condition may be attached meanwhile.
        std::vector<dds_attach_t> found(static_cast<std::size_t>(attached) + 1);
        triggered.reserve(found.size());
        const dds_return_t count = dds_waitset_wait(wait_set, found.data(), found.size(), timeout);
        if (count <= 0) {
            return count == 0 ? Status::timeout : status_of(count);
        }
        found.resize(std::min(found.size(), static_cast<std::size_t>(count)));
        for (const dds_attach_t condition : found) {
            triggered.push_back(static_cast<EntityId>(condition));
        }
        return Status::ok;
    });
}

}  // namespace pexa::engine

// Cyclone's own definition waits by the wall clock. When that is set back by an hour, Cyclone's
// threads sleep for an hour: they announce nothing, acknowledge nothing and send nothing again. The
// dynamic linker prefers this definition, because our library comes before Cyclone's.
bool ddsrt_cond_waituntil(ddsrt_cond_t* condition, ddsrt_mutex_t* mutex, dds_time_t wall_time) {
    if (wall_time == DDS_NEVER) {
        ddsrt_cond_wait(condition, mutex);
        return true;
    }
    const dds_duration_t left = std::max(wall_time - dds_time(), dds_duration_t{0});
    const dds_time_t end = ddsrt_mtime_add_duration(ddsrt_time_monotonic(), left).v;
    const timespec deadline = {end / DDS_NSECS_IN_SEC, end % DDS_NSECS_IN_SEC};
    switch (pthread_cond_clockwait(&condition->cond, &mutex->mutex, CLOCK_MONOTONIC, &deadline)) {
        case 0:
            return true;
        case ETIMEDOUT:
            return false;
        default:
            std::abort();
    }
}

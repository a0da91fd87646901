#include <dds/dds.h>
#include <dds/ddsi/ddsi_xqos.h>
#include <dds/ddsrt/heap.h>
#include <dds/ddsrt/process.h>
#include <dds/ddsrt/sockets.h>

#include <array>
#include <cstring>
#include <string>

#include "platform/engine/cyclone/domain_resources.hpp"
#include "platform/engine/cyclone/entity_records.hpp"
#include "platform/engine/cyclone/entity_tree.hpp"
#include "platform/engine/cyclone/guarded.hpp"
#include "platform/engine/cyclone/listener_call.hpp"
#include "platform/engine/cyclone/listener_conversion.hpp"
#include "platform/engine/cyclone/qos_conversion.hpp"
#include "platform/engine/cyclone/receive_threads.hpp"
#include "platform/engine/cyclone/results.hpp"
#include "platform/engine/cyclone/security/mended_crypto.hpp"
#include "platform/engine/engine.hpp"

namespace pexa::engine {

namespace {

using cyclone::guarded;
using cyclone::NewEntity;
using cyclone::status_of;

// Cyclone's collector of endpoints waits for every thread that is in Cyclone. A callback is.
bool waits_for_callbacks(EntityId entity) {
    return is_participant(entity) || cyclone::has_endpoints(entity);
}

// Cyclone announces the process with a participant, but not with one that has properties of its
// own.
void add_process_to(dds_qos_t* properties) {
    constexpr bool announced = true;
    std::array<char, 256> host;
    if (ddsrt_gethostname(host.data(), host.size()) == DDS_RETCODE_OK) {
        ddsi_xqos_add_property_if_unset(properties, announced, "__Hostname", host.data());
    }
    ddsi_xqos_add_property_if_unset(properties, announced, "__Pid",
                                    std::to_string(ddsrt_getpid()).c_str());
    if (char* program = ddsrt_getprocessname()) {
        ddsi_xqos_add_property_if_unset(properties, announced, "__ProcessName", program);
        ddsrt_free(program);
    }
}

}  // namespace

Created create_participant(std::uint32_t domain_id, const Qos& qos,
                           ListenerSetting listener) noexcept {
    return guarded([&]() -> Created {
        const cyclone::StandardDescriptorsHeld standard;
        if (!cyclone::has_resources_for(domain_id)) {
            return {Status::out_of_resources, no_entity};
        }
        const cyclone::QosPtr converted = cyclone::to_cyclone(qos);
        if (!qos.properties.empty()) {
            add_process_to(converted.get());
            cyclone::use_mended_crypto(*converted);
        }
        NewEntity entity(no_entity);
        cyclone::ReceiversNote receivers;
        const dds_entity_t participant =
            dds_create_participant(domain_id, converted.get(), cyclone::to_cyclone(listener).get());
        if (participant > 0) {
            receivers.write(participant, domain_id);
        }
        return entity.note(participant);
    });
}

Created create_publisher(EntityId participant, const Qos& qos, ListenerSetting listener) noexcept {
    return guarded([&] {
        NewEntity publisher(participant);
        return publisher.note(dds_create_publisher(participant, cyclone::to_cyclone(qos).get(),
                                                   cyclone::to_cyclone(listener).get()));
    });
}

Created create_subscriber(EntityId participant, const Qos& qos, ListenerSetting listener) noexcept {
    return guarded([&] {
        NewEntity subscriber(participant);
        return subscriber.note(dds_create_subscriber(participant, cyclone::to_cyclone(qos).get(),
                                                     cyclone::to_cyclone(listener).get()));
    });
}

bool is_participant(EntityId entity) noexcept {
    return entity > 0 && dds_get_participant(entity) == entity;
}

Status get_domain_id(EntityId entity, std::uint32_t& domain_id) noexcept {
    return status_of(dds_get_domainid(entity, &domain_id));
}

Status get_guid(EntityId entity, Guid& guid) noexcept {
    dds_guid_t found;
    const Status result = status_of(dds_get_guid(entity, &found));
    static_assert(sizeof guid == sizeof found.v);
    if (result == Status::ok) {
        std::memcpy(guid.data(), found.v, sizeof found.v);
    }
    return result;
}

Status delete_entity(EntityId entity) noexcept {
    // Cyclone would keep such a topic, unreachable, until its last endpoint is deleted.
    const auto topic = cyclone::topics().find(entity);
    if (topic && topic->endpoints != 0) {
        return Status::precondition_not_met;
    }
    if (cyclone::is_in_callback() && waits_for_callbacks(entity)) {
        return Status::illegal_operation;
    }
    const Status result = status_of(is_participant(entity) ? cyclone::delete_participant(entity)
                                                           : dds_delete(entity));
    if (result == Status::ok) {
        cyclone::forget(entity);
    }
    return result;
}

Status get_qos(EntityId entity, Qos& qos) noexcept {
    return guarded([&] {
        const cyclone::QosPtr found(dds_create_qos());
        const Status result = status_of(dds_get_qos(entity, found.get()));
        if (result == Status::ok) {
            qos = cyclone::from_cyclone(found.get());
        }
        return result;
    });
}

Status set_qos(EntityId entity, const Qos& qos) noexcept {
    const Status result =
        guarded([&] { return status_of(dds_set_qos(entity, cyclone::to_cyclone(qos).get())); });
    const auto writer = cyclone::writers().find(entity);
    if (result == Status::ok && writer && qos.autodispose_unregistered_instances) {
        writer->autodispose = *qos.autodispose_unregistered_instances;
    }
    return result;
}

Status get_local_handle(EntityId entity, LocalHandle& handle) noexcept {
    return status_of(dds_get_instance_handle(entity, &handle));
}

Status assert_liveliness(EntityId entity) noexcept {
    return status_of(dds_assert_liveliness(entity));
}

}  // namespace pexa::engine

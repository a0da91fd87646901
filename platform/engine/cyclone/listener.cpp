#include "platform/engine/listener.hpp"

#include "platform/engine/cyclone/listener_call.hpp"
#include "platform/engine/cyclone/listener_conversion.hpp"
#include "platform/engine/cyclone/results.hpp"
#include "platform/engine/cyclone/statuses.hpp"

namespace pexa::engine {

namespace {

void announce_data_available(dds_entity_t reader, void* argument) {
    Listener& listener = *static_cast<Listener*>(argument);
    const ListenerCall call(listener, reader);
    listener.on_data_available(reader);
}

void announce_data_on_readers(dds_entity_t subscriber, void* argument) {
    Listener& listener = *static_cast<Listener*>(argument);
    const ListenerCall call(listener, subscriber);
    listener.on_data_on_readers(subscriber);
}

// Waits for running callbacks. Statuses that the setting does not take go to the ancestors.
Status install(EntityId entity, const ListenerSetting& setting) {
    return cyclone::status_of(dds_set_listener(entity, cyclone::to_cyclone(setting).get()));
}

// Resets the bit of a status that has no values. Returns whether it was set.
bool reset_bit(EntityId entity, StatusMask bit) {
    std::uint32_t found = 0;
    return dds_take_status(entity, &found, cyclone::to_cyclone_status_mask(bit)) ==
               DDS_RETCODE_OK &&
           found != 0;
}

// Cyclone announces nothing that happened before a listener was installed.
void announce_pending(EntityId entity, const ListenerSetting& setting) {
    const StatusMask pending = status_changes(entity) & setting.mask;
    for (const cyclone::StatusRow& row : cyclone::statuses_with_values()) {
        CommunicationStatus status;
        // Cyclone may have announced it meanwhile, together with a new change.
        if ((pending & row.kind) == 0 || row.read(entity, status) != Status::ok ||
            !cyclone::has_changed(status)) {
            continue;
        }
        const ListenerCall call(*setting.listener, entity);
        setting.listener->on_status(entity, row.kind, status);
    }
    if ((pending & data_on_readers_status) != 0 && reset_bit(entity, data_on_readers_status)) {
        announce_data_on_readers(entity, setting.listener);
    }
    if ((pending & data_available_status) != 0 && reset_bit(entity, data_available_status)) {
        announce_data_available(entity, setting.listener);
    }
}

}  // namespace

cyclone::ListenerPtr cyclone::to_cyclone(const ListenerSetting& setting) {
    if (setting.listener == nullptr || (setting.mask & any_status) == 0) {
        return nullptr;
    }
    ListenerPtr out(dds_create_listener(setting.listener));
    for (const StatusRow& row : statuses_with_values()) {
        if ((setting.mask & row.kind) != 0) {
            row.install(out.get(), setting.listener);
        }
    }
    constexpr bool resets_status = true;
    if ((setting.mask & data_available_status) != 0) {
        dds_lset_data_available_arg(out.get(), announce_data_available, setting.listener,
                                    resets_status);
    }
    if ((setting.mask & data_on_readers_status) != 0) {
        dds_lset_data_on_readers_arg(out.get(), announce_data_on_readers, setting.listener,
                                     resets_status);
    }
    return out;
}

Status set_listener(EntityId entity, ListenerSetting setting) noexcept {
    if (cyclone::is_in_callback_of(entity)) {
        return Status::illegal_operation;
    }
    const Status result = install(entity, setting);
    if (result != Status::ok) {
        return result;
    }
    if (setting.listener != nullptr) {
        announce_pending(entity, setting);
    }
    return Status::ok;
}

}  // namespace pexa::engine

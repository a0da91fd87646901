#include "platform/engine/listener.hpp"

#include "platform/engine/cyclone/entity_table.hpp"
#include "platform/engine/cyclone/listener_bridge.hpp"
#include "platform/engine/cyclone/results.hpp"
#include "platform/engine/cyclone/statuses.hpp"

namespace pexa::engine {

// Runs a callback: alone for its listener, and known to the thread while it lasts.
class ListenerCall {
public:
    ListenerCall(Listener& listener, EntityId entity)
        : lock_(listener.serial_), entity_(entity), outer_(innermost_) {
        innermost_ = this;
    }
    ListenerCall(const ListenerCall&) = delete;
    ListenerCall& operator=(const ListenerCall&) = delete;
    ~ListenerCall() { innermost_ = outer_; }

    // Whether the thread is in a callback about an entity that the predicate accepts.
    template <typename Predicate>
    [[nodiscard]] static bool any(const Predicate& matches) {
        for (const ListenerCall* call = innermost_; call != nullptr; call = call->outer_) {
            if (matches(call->entity_)) {
                return true;
            }
        }
        return false;
    }

private:
    static thread_local const ListenerCall* innermost_;

    std::lock_guard<std::recursive_mutex> lock_;
    EntityId entity_;
    const ListenerCall* outer_;
};

thread_local const ListenerCall* ListenerCall::innermost_ = nullptr;

namespace {

using cyclone::StatusTraits;

template <typename Ours>
void announce(dds_entity_t entity, const typename StatusTraits<Ours>::Engine status,
              void* argument) {
    Listener& listener = *static_cast<Listener*>(argument);
    const ListenerCall call(listener, entity);
    (listener.*StatusTraits<Ours>::callback)(entity, cyclone::from_engine<Ours>(status));
}

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

template <typename Ours>
Status read_status(EntityId entity, Ours& status) {
    typename StatusTraits<Ours>::Engine found{};
    const Status result = cyclone::status_of(StatusTraits<Ours>::get(entity, &found));
    if (result == Status::ok) {
        status = cyclone::from_engine<Ours>(found);
    }
    return result;
}

// Waits for running callbacks; what the setting does not take is inherited from the ancestors.
Status install(EntityId entity, const ListenerSetting& setting) {
    return cyclone::status_of(dds_set_listener(entity, cyclone::make_listener(setting).get()));
}

bool take_flag(EntityId entity, StatusMask bit) {
    std::uint32_t found = 0;
    return dds_take_status(entity, &found, cyclone::engine_status_mask(bit)) == DDS_RETCODE_OK &&
           found != 0;
}

// The engine announces nothing that happened before a listener was installed.
void announce_pending(EntityId entity, Listener& listener, StatusMask mask) {
    const StatusMask pending = status_changes(entity) & mask;
    cyclone::for_each_counted_status([&]<typename Ours>(Ours*) {
        Ours status;
        if ((pending & StatusTraits<Ours>::bit) == 0) {
            return;
        }
        // The engine may have announced it meanwhile, together with a new change.
        if (read_status(entity, status) != Status::ok || !cyclone::has_changed(status)) {
            return;
        }
        const ListenerCall call(listener, entity);
        (listener.*StatusTraits<Ours>::callback)(entity, status);
    });
    if ((pending & data_on_readers_status) != 0 && take_flag(entity, data_on_readers_status)) {
        announce_data_on_readers(entity, &listener);
    }
    if ((pending & data_available_status) != 0 && take_flag(entity, data_available_status)) {
        announce_data_available(entity, &listener);
    }
}

}  // namespace

cyclone::ListenerPtr cyclone::make_listener(const ListenerSetting& setting) {
    if (setting.listener == nullptr || (setting.mask & any_status) == 0) {
        return nullptr;
    }
    ListenerPtr out(dds_create_listener(setting.listener));
    constexpr bool resets_status = true;
    for_each_counted_status([&]<typename Ours>(Ours*) {
        if ((setting.mask & StatusTraits<Ours>::bit) != 0) {
            StatusTraits<Ours>::install(out.get(), announce<Ours>, setting.listener, resets_status);
        }
    });
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

bool cyclone::is_in_callback() {
    return ListenerCall::any([](EntityId) { return true; });
}

bool cyclone::is_in_callback_of(EntityId entity) {
    return ListenerCall::any([entity](EntityId inner) {
        while (inner > 0 && inner != entity) {
            inner = cyclone::parent_of(inner);
        }
        return inner == entity;
    });
}

Status set_listener(EntityId entity, Listener* listener, StatusMask mask) noexcept {
    if (cyclone::is_in_callback_of(entity)) {
        return Status::illegal_operation;
    }
    const ListenerSetting setting{listener, mask};
    const Status result = install(entity, setting);
    if (result != Status::ok) {
        return result;
    }
    // The application's own participant has no note yet.
    cyclone::notes().add(entity, std::make_shared<const cyclone::EntityNote>(
                                     cyclone::EntityNote{cyclone::parent_of(entity), setting}));
    // The engine hands down a new listener only in place of one that it handed down before.
    for (const EntityId inner : cyclone::contents_of(entity)) {
        if (const auto note = cyclone::notes().find(inner)) {
            static_cast<void>(install(inner, note->listener));
        }
    }
    if (listener != nullptr) {
        announce_pending(entity, *listener, mask);
    }
    return Status::ok;
}

StatusMask status_changes(EntityId entity) noexcept {
    std::uint32_t changed = 0;
    if (dds_get_status_changes(entity, &changed) != DDS_RETCODE_OK) {
        return 0;
    }
    return cyclone::status_mask_of(changed);
}

Status get_status(EntityId topic, InconsistentTopic& status) noexcept {
    return read_status(topic, status);
}
Status get_status(EntityId writer, OfferedDeadlineMissed& status) noexcept {
    return read_status(writer, status);
}
Status get_status(EntityId writer, OfferedIncompatibleQos& status) noexcept {
    return read_status(writer, status);
}
Status get_status(EntityId writer, LivelinessLost& status) noexcept {
    return read_status(writer, status);
}
Status get_status(EntityId writer, PublicationMatched& status) noexcept {
    return read_status(writer, status);
}
Status get_status(EntityId reader, RequestedDeadlineMissed& status) noexcept {
    return read_status(reader, status);
}
Status get_status(EntityId reader, RequestedIncompatibleQos& status) noexcept {
    return read_status(reader, status);
}
Status get_status(EntityId reader, SampleLost& status) noexcept {
    return read_status(reader, status);
}
Status get_status(EntityId reader, SampleRejected& status) noexcept {
    return read_status(reader, status);
}
Status get_status(EntityId reader, LivelinessChanged& status) noexcept {
    return read_status(reader, status);
}
Status get_status(EntityId reader, SubscriptionMatched& status) noexcept {
    return read_status(reader, status);
}

}  // namespace pexa::engine

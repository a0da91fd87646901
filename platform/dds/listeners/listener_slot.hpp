/// @file listener_slot.hpp
/// @brief The listener that an application installed on an entity.
#pragma once

#include <atomic>
#include <mutex>

#include "pexa/entity.h"
#include "platform/engine/listener.hpp"

namespace pexa::dds {

/// A listener of any kind of entity. All kinds are parts of a participant's record.
struct ListenerSetting {
    DDS_DomainParticipantListener record{};
    DDS_StatusMask mask = DDS_STATUS_MASK_NONE;

    ListenerSetting() = default;
    /// A listener may be NULL: it takes nothing then.
    /// @{
    ListenerSetting(const DDS_TopicListener* listener, DDS_StatusMask statuses);
    ListenerSetting(const DDS_DataWriterListener* listener, DDS_StatusMask statuses);
    ListenerSetting(const DDS_DataReaderListener* listener, DDS_StatusMask statuses);
    ListenerSetting(const DDS_PublisherListener* listener, DDS_StatusMask statuses);
    ListenerSetting(const DDS_SubscriberListener* listener, DDS_StatusMask statuses);
    ListenerSetting(const DDS_DomainParticipantListener* listener, DDS_StatusMask statuses);
    /// @}
};

/// An entity's link in the chain of listeners that ends at its participant. A status that a
/// listener does not take, because of its mask or an empty slot, goes to the next listener.
class ListenerSlot {
public:
    /// @param above the parent's slot, which must outlive this one, or NULL
    explicit ListenerSlot(const ListenerSlot* above) : above_(above) {}

    /// Installs a setting. @return the old one
    ListenerSetting exchange(const ListenerSetting& setting);

    /// @return the statuses that a listener takes, here or above.
    engine::StatusMask taken() const;

    /// Gives a copy of the nearest listener that takes a status. @return false when no listener
    /// does
    bool find(engine::StatusMask status, DDS_DomainParticipantListener& found) const;

private:
    const ListenerSlot* above_;
    mutable std::mutex mutex_;
    ListenerSetting setting_;
    std::atomic<engine::StatusMask> own_ = 0;
};

}  // namespace pexa::dds

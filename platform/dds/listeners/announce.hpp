/// @file announce.hpp
/// @brief Calling the application's listener with a status that has changed.
#pragma once

#include "platform/dds/interface/handle.hpp"
#include "platform/dds/interface/scoped_call.hpp"
#include "platform/dds/listeners/listener_slot.hpp"
#include "platform/dds/listeners/status_conversion.hpp"

namespace pexa::dds {

/// @name The part of a participant's listener that another kind of listener is
/// @{
inline const DDS_TopicListener& part(const DDS_DomainParticipantListener& listener,
                                     const DDS_TopicListener* /*kind*/) {
    return listener.as_topiclistener;
}
inline const DDS_DataWriterListener& part(const DDS_DomainParticipantListener& listener,
                                          const DDS_DataWriterListener* /*kind*/) {
    return listener.as_publisherlistener.as_datawriterlistener;
}
inline const DDS_DataReaderListener& part(const DDS_DomainParticipantListener& listener,
                                          const DDS_DataReaderListener* /*kind*/) {
    return listener.as_subscriberlistener.as_datareaderlistener;
}
/// @}

/// Calls the slot of the nearest listener that takes a status, with the status converted.
template <typename Object, typename Part, typename Record>
void announce(Object& object, void (*Part::*slot)(void*, typename Object::Handle*, const Record*),
              const engine::CommunicationStatus& status) {
    const EngineCall mark;
    Record record{};
    DDS_DomainParticipantListener listener;
    if (!object.listeners().find(kind_of(record), listener)) {
        return;
    }
    convert(status, record, [&](engine::LocalHandle peer) { return object.peer_handle(peer); });
    const Part& chosen = part(listener, static_cast<const Part*>(nullptr));
    (chosen.*slot)(chosen.listener_data, handle_of(&object), &record);
}

}  // namespace pexa::dds

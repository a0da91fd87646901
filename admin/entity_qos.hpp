/// @file entity_qos.hpp
/// @brief QoS of the logger's entities: profile or defaults, then what the protocol needs.
#pragma once

#include "orvane/admin.h"
#include "orvane/core.h"
#include "pexa/qos.h"

namespace orvane::admin {

inline void finalize_qos(DDS_DomainParticipantQos* qos) {
    DDS_DomainParticipantQos_finalize(qos);
}
inline void finalize_qos(DDS_TopicQos* qos) {
    DDS_TopicQos_finalize(qos);
}
inline void finalize_qos(DDS_PublisherQos* qos) {
    DDS_PublisherQos_finalize(qos);
}
inline void finalize_qos(DDS_SubscriberQos* qos) {
    DDS_SubscriberQos_finalize(qos);
}
inline void finalize_qos(DDS_DataWriterQos* qos) {
    DDS_DataWriterQos_finalize(qos);
}
inline void finalize_qos(DDS_DataReaderQos* qos) {
    DDS_DataReaderQos_finalize(qos);
}

/// A QoS record that is finalised with its scope, whether or not it was filled.
template <typename Qos>
class ScopedQos {
public:
    ScopedQos() = default;
    ScopedQos(const ScopedQos&) = delete;
    ScopedQos& operator=(const ScopedQos&) = delete;
    ~ScopedQos() { finalize_qos(&qos_); }

    Qos* get() noexcept { return &qos_; }

private:
    Qos qos_{};
};

bool profile_exists(const QEL_KX_DDSEntities& entities, const char* library, const char* profile);

/// @name Getters
/// Contracts: QEL_KX_DDSEntities_get…Qos.
/// @{
DDS_ReturnCode_t participant_qos(const QEL_KX_DDSEntities* entities, DDS_DomainParticipantQos* qos,
                                 const QEL_KX_Options* options);
DDS_ReturnCode_t publisher_qos(const QEL_KX_DDSEntities* entities, DDS_PublisherQos* qos);
DDS_ReturnCode_t subscriber_qos(const QEL_KX_DDSEntities* entities, DDS_SubscriberQos* qos);
DDS_ReturnCode_t topic_qos(const QEL_KX_DDSEntities* entities, DDS_TopicQos* qos,
                           const char* topic_name);
DDS_ReturnCode_t writer_qos(const QEL_KX_DDSEntities* entities, DDS_DataWriterQos* qos,
                            const char* topic_name);
DDS_ReturnCode_t reader_qos(const QEL_KX_DDSEntities* entities, DDS_DataReaderQos* qos,
                            const char* topic_name);
/// @}

}  // namespace orvane::admin

#include "admin/entity_qos.hpp"

#include <array>
#include <cstring>

#include "core/shared_field.hpp"
#include "orvane/statistics.h"
#include "pexa/domain.h"
#include "pexa/string.h"

namespace orvane::admin {
namespace {

/// What the logger's protocol needs of a topic and its endpoints. All are RELIABLE.
struct ForcedPolicies {
    const char* topic_name;
    /// Readers that come late get what was published before.
    bool transient_local;
    /// History without a profile; 0: the logger has no such endpoint on this topic.
    DDS_Long writer_depth;
    DDS_Long reader_depth;
};

constexpr std::array<ForcedPolicies, QEL_KX_TOPIC_COUNT + 1> forced_policies{{
    {QEL_KX_LOG_TOPIC_NAME, true, 10, 0},
    {QEL_KX_STATE_TOPIC_NAME, true, 1, 0},
    {QEL_KX_COMMAND_REQUEST_TOPIC_NAME, false, 0, 10},
    {QEL_KX_COMMAND_RESPONSE_TOPIC_NAME, false, 10, 0},
    {QEL_KX_STATISTICS_TOPIC_NAME, true, 1, 0},
}};

const ForcedPolicies* policies_of(const char* topic_name) noexcept {
    for (const ForcedPolicies& row : forced_policies) {
        if (MOSKString_iCompare(row.topic_name, topic_name) == 0) {
            return &row;
        }
    }
    return nullptr;
}

/// Where a QoS came from. A profile's own choice outweighs the settings meant for defaults.
enum class Source { profile, defaults };

/// The rule that all getters share.
/// @param from_profile gets the factory, the QoS, and the names of library and profile
/// @param from_defaults gets the QoS
/// @param force gets the QoS and its source
template <typename Qos, typename FromProfile, typename FromDefaults, typename Force>
DDS_ReturnCode_t obtain(const QEL_KX_DDSEntities* entities, Qos* qos,
                        DDS_ReturnCode_t (*initialize)(Qos*), FromProfile from_profile,
                        FromDefaults from_defaults, Force force) {
    if (entities == nullptr || qos == nullptr) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    if (const DDS_ReturnCode_t result = initialize(qos); result != DDS_RETCODE_OK) {
        return result;
    }
    const bool profile = profile_exists(*entities, entities->qosLibrary, entities->qosProfile);
    const DDS_ReturnCode_t result = profile
                                        ? from_profile(entities->participantFactory, qos,
                                                       entities->qosLibrary, entities->qosProfile)
                                        : from_defaults(qos);
    if (result != DDS_RETCODE_OK) {
        return result;
    }
    return force(*qos, profile ? Source::profile : Source::defaults);
}

template <typename Qos>
DDS_ReturnCode_t reset_presentation(Qos& qos, Source) {
    qos.presentation.access_scope = DDS_INSTANCE_PRESENTATION_QOS;
    qos.presentation.coherent_access = DDS_BOOLEAN_FALSE;
    qos.presentation.ordered_access = DDS_BOOLEAN_FALSE;
    return DDS_RETCODE_OK;
}

/// Durability and reliability of a topic or writer. A reader asks for no durability.
template <typename Qos>
void force_delivery(Qos& qos, const ForcedPolicies& policies) {
    if (policies.transient_local) {
        qos.durability.kind = DDS_TRANSIENT_LOCAL_DURABILITY_QOS;
    }
    qos.reliability.kind = DDS_RELIABLE_RELIABILITY_QOS;
}

template <typename Qos>
void force_endpoint(Qos& qos) {
    qos.liveliness.kind = DDS_AUTOMATIC_LIVELINESS_QOS;
    qos.destination_order.kind = DDS_BY_RECEPTION_TIMESTAMP_DESTINATIONORDER_QOS;
    qos.ownership.kind = DDS_SHARED_OWNERSHIP_QOS;
}

template <typename Qos>
void force_history(Qos& qos, Source source, DDS_Long depth) {
    if (source == Source::defaults) {
        qos.history.kind = DDS_KEEP_LAST_HISTORY_QOS;
        qos.history.depth = depth;
    }
}

}  // namespace

bool profile_exists(const QEL_KX_DDSEntities& entities, const char* library, const char* profile) {
    if (library == nullptr || *library == '\0' || profile == nullptr || *profile == '\0') {
        return false;
    }
    DDS_StringSeq names{};
    bool found = false;
    if (DDS_DomainParticipantFactory_get_qos_profiles(entities.participantFactory, &names,
                                                      library) == DDS_RETCODE_OK) {
        const DDS_Long count = DDS_StringSeq_get_length(&names);
        for (DDS_Long index = 0; index < count && !found; ++index) {
            found = std::strcmp(DDS_StringSeq_get(&names, index), profile) == 0;
        }
    }
    DDS_StringSeq_finalize(&names);
    return found;
}

DDS_ReturnCode_t participant_qos(const QEL_KX_DDSEntities* entities, DDS_DomainParticipantQos* qos,
                                 const QEL_KX_Options* options) {
    if (options == nullptr) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    return obtain(
        entities, qos, DDS_DomainParticipantQos_initialize,
        DDS_DomainParticipantFactory_get_participant_qos_from_profile,
        [&](DDS_DomainParticipantQos* defaults) {
            return DDS_DomainParticipantFactory_get_default_participant_qos(
                entities->participantFactory, defaults);
        },
        [&](DDS_DomainParticipantQos& forced, Source) {
            const char* const kind = core::load(options->application_kind);
            if (kind == nullptr || *kind == '\0') {
                return DDS_RETCODE_OK;
            }
            return DDS_String_replace(&forced.participant_name.name, kind) != nullptr
                       ? DDS_RETCODE_OK
                       : DDS_RETCODE_OUT_OF_RESOURCES;
        });
}

DDS_ReturnCode_t publisher_qos(const QEL_KX_DDSEntities* entities, DDS_PublisherQos* qos) {
    return obtain(
        entities, qos, DDS_PublisherQos_initialize,
        DDS_DomainParticipantFactory_get_publisher_qos_from_profile,
        [&](DDS_PublisherQos* defaults) {
            return DDS_DomainParticipant_get_default_publisher_qos(entities->participant, defaults);
        },
        reset_presentation<DDS_PublisherQos>);
}

DDS_ReturnCode_t subscriber_qos(const QEL_KX_DDSEntities* entities, DDS_SubscriberQos* qos) {
    return obtain(
        entities, qos, DDS_SubscriberQos_initialize,
        DDS_DomainParticipantFactory_get_subscriber_qos_from_profile,
        [&](DDS_SubscriberQos* defaults) {
            return DDS_DomainParticipant_get_default_subscriber_qos(entities->participant,
                                                                    defaults);
        },
        reset_presentation<DDS_SubscriberQos>);
}

DDS_ReturnCode_t topic_qos(const QEL_KX_DDSEntities* entities, DDS_TopicQos* qos,
                           const char* topic_name) {
    return obtain(
        entities, qos, DDS_TopicQos_initialize,
        [&](auto* factory, DDS_TopicQos* profile_qos, const char* library, const char* profile) {
            return DDS_DomainParticipantFactory_get_topic_qos_from_profile_w_topic_name(
                factory, profile_qos, library, profile, topic_name);
        },
        [&](DDS_TopicQos* defaults) {
            return DDS_DomainParticipant_get_default_topic_qos_w_topic_name(entities->participant,
                                                                            defaults, topic_name);
        },
        [&](DDS_TopicQos& forced, Source source) {
            const ForcedPolicies* const policies = policies_of(topic_name);
            if (policies != nullptr && source == Source::defaults) {
                force_delivery(forced, *policies);
            }
            return DDS_RETCODE_OK;
        });
}

DDS_ReturnCode_t writer_qos(const QEL_KX_DDSEntities* entities, DDS_DataWriterQos* qos,
                            const char* topic_name) {
    return obtain(
        entities, qos, DDS_DataWriterQos_initialize,
        [&](auto* factory, DDS_DataWriterQos* profile_qos, const char* library,
            const char* profile) {
            return DDS_DomainParticipantFactory_get_datawriter_qos_from_profile_w_topic_name(
                factory, profile_qos, library, profile, topic_name);
        },
        [&](DDS_DataWriterQos* defaults) {
            return DDS_DomainParticipant_get_default_datawriter_qos_w_topic_name(
                entities->participant, defaults, topic_name);
        },
        [&](DDS_DataWriterQos& forced, Source source) {
            forced.latency_budget.duration = DDS_DURATION_ZERO;
            force_endpoint(forced);
            const ForcedPolicies* const policies = policies_of(topic_name);
            if (policies != nullptr && policies->writer_depth != 0) {
                force_delivery(forced, *policies);
                force_history(forced, source, policies->writer_depth);
            }
            return DDS_RETCODE_OK;
        });
}

DDS_ReturnCode_t reader_qos(const QEL_KX_DDSEntities* entities, DDS_DataReaderQos* qos,
                            const char* topic_name) {
    return obtain(
        entities, qos, DDS_DataReaderQos_initialize,
        [&](auto* factory, DDS_DataReaderQos* profile_qos, const char* library,
            const char* profile) {
            return DDS_DomainParticipantFactory_get_datareader_qos_from_profile_w_topic_name(
                factory, profile_qos, library, profile, topic_name);
        },
        [&](DDS_DataReaderQos* defaults) {
            return DDS_DomainParticipant_get_default_datareader_qos_w_topic_name(
                entities->participant, defaults, topic_name);
        },
        [&](DDS_DataReaderQos& forced, Source source) {
            forced.deadline.period = DDS_DURATION_INFINITE;
            forced.latency_budget.duration = DDS_DURATION_INFINITE;
            force_endpoint(forced);
            const ForcedPolicies* const policies = policies_of(topic_name);
            if (policies != nullptr && policies->reader_depth != 0) {
                forced.reliability.kind = DDS_RELIABLE_RELIABILITY_QOS;
                force_history(forced, source, policies->reader_depth);
            }
            return DDS_RETCODE_OK;
        });
}

}  // namespace orvane::admin

namespace admin = orvane::admin;

DDS_Boolean QEL_KX_DDSEntities_doesQosLibraryAndProfileExist(const QEL_KX_DDSEntities* entities,
                                                             const char* library,
                                                             const char* profile) {
    return entities != nullptr && admin::profile_exists(*entities, library, profile) ? 1 : 0;
}

DDS_ReturnCode_t QEL_KX_DDSEntities_getDomainParticipantQos(const QEL_KX_DDSEntities* entities,
                                                            DDS_DomainParticipantQos* qos,
                                                            const QEL_KX_Options* options) {
    return admin::participant_qos(entities, qos, options);
}

DDS_ReturnCode_t QEL_KX_DDSEntities_getPublisherQos(const QEL_KX_DDSEntities* entities,
                                                    DDS_PublisherQos* qos) {
    return admin::publisher_qos(entities, qos);
}

DDS_ReturnCode_t QEL_KX_DDSEntities_getSubscriberQos(const QEL_KX_DDSEntities* entities,
                                                     DDS_SubscriberQos* qos) {
    return admin::subscriber_qos(entities, qos);
}

DDS_ReturnCode_t QEL_KX_DDSEntities_getTopicQos(const QEL_KX_DDSEntities* entities,
                                                DDS_TopicQos* qos, const char* topicName) {
    return admin::topic_qos(entities, qos, topicName);
}

DDS_ReturnCode_t QEL_KX_DDSEntities_getDataWriterQos(const QEL_KX_DDSEntities* entities,
                                                     DDS_DataWriterQos* qos,
                                                     const char* topicName) {
    return admin::writer_qos(entities, qos, topicName);
}

DDS_ReturnCode_t QEL_KX_DDSEntities_getDataReaderQos(const QEL_KX_DDSEntities* entities,
                                                     DDS_DataReaderQos* qos,
                                                     const char* topicName) {
    return admin::reader_qos(entities, qos, topicName);
}

#include "admin/statistics_entities.hpp"

#include <cstring>
#include <utility>

#include "admin/creation.hpp"
#include "admin/topics.hpp"
#include "core/report.hpp"
#include "core/statistics_publication.hpp"
#include "orvane/statistics.h"
#include "pexa/publication.h"
#include "types/type_support.hpp"
#include "types/typed_writer.hpp"

namespace orvane::admin {
namespace {

constexpr TopicRow topic_row{QEL_KX_STATISTICS_TOPIC_NAME,
                             QEL_KX_STATISTICS_REGISTERED_TYPE_NAME,
                             types::TypeSupport<QEL_KX_ADMIN_Statistics>::register_type,
                             "Unable to register Statistics type",
                             "Unable to get QoS for Statistics Topic",
                             "Unable to create Statistics Topic"};

/// The topic that was made for the logger, or NULL if it existed before.
DDS_Topic* created_topic = nullptr;

bool are_wanted(DDS_DomainParticipant* participant) {
    ScopedQos<DDS_DomainParticipantQos> qos;
    if (DDS_DomainParticipantQos_initialize(qos.get()) != DDS_RETCODE_OK ||
        DDS_DomainParticipant_get_qos(participant, qos.get()) != DDS_RETCODE_OK) {
        return false;
    }
    DDS_PropertySeq& properties = qos.get()->property.value;
    const DDS_Long count = DDS_PropertySeq_get_length(&properties);
    for (DDS_Long i = 0; i < count; ++i) {
        const DDS_Property_t property = DDS_PropertySeq_get(&properties, i);
        if (std::strcmp(property.name, QEL_KX_STATISTICS_PROPERTY) == 0) {
            return std::strcmp(property.value, "true") == 0;
        }
    }
    return false;
}

void on_publication_matched(void* /*data*/, DDS_DataWriter* /*writer*/,
                            const DDS_PublicationMatchedStatus* status) {
    if (status->current_count_change > 0) {
        core::note_viewer(status->last_subscription_handle);
    }
}

core::Outcome create_writer(const QEL_KX_DDSEntities& entities, DDS_Topic* topic,
                            DDS_DataWriter*& writer) {
    return create_with_qos<DDS_DataWriterQos>(
        writer,
        [&](DDS_DataWriterQos* qos) {
            const DDS_ReturnCode_t result =
                writer_qos(&entities, qos, QEL_KX_STATISTICS_TOPIC_NAME);
            // A profile that keeps messages is not meant for these: only the last ones are true.
            qos->history.kind = DDS_KEEP_LAST_HISTORY_QOS;
            qos->history.depth = 1;
            return result;
        },
        "Unable to get QoS for Statistics DataWriter",
        [&](const DDS_DataWriterQos* qos) {
            return DDS_Publisher_create_datawriter(entities.publisher, topic, qos, nullptr,
                                                   DDS_STATUS_MASK_NONE);
        },
        "Unable to create Statistics DataWriter");
}

/// The writer may have met readers before it had the listener.
void note_earlier_viewers(DDS_DataWriter* log_writer) {
    DDS_InstanceHandleSeq readers{};
    if (DDS_DataWriter_get_matched_subscriptions(log_writer, &readers) == DDS_RETCODE_OK) {
        const DDS_Long count = DDS_InstanceHandleSeq_get_length(&readers);
        for (DDS_Long i = 0; i < count; ++i) {
            core::note_viewer(*DDS_InstanceHandleSeq_get_reference(&readers, i));
        }
    }
    DDS_InstanceHandleSeq_finalize(&readers);
}

core::Outcome listen_for_viewers(const QEL_KX_DDSEntities& entities) {
    core::forget_viewers();
    DDS_DataWriterListener listener{};
    listener.on_publication_matched = on_publication_matched;
    if (DDS_DataWriter_set_listener(entities.logMessageWriter, &listener,
                                    DDS_PUBLICATION_MATCHED_STATUS) != DDS_RETCODE_OK) {
        return core::Outcome::failed("Unable to set listener in LogMessage DataWriter");
    }
    note_earlier_viewers(entities.logMessageWriter);
    return core::Outcome::done();
}

core::Outcome create(const QEL_KX_DDSEntities& entities) {
    DDS_Topic* topic = nullptr;
    if (const core::Outcome outcome = obtain_topic(entities, topic_row, topic, created_topic);
        outcome.has_failed()) {
        return outcome;
    }
    if (const core::Outcome outcome = listen_for_viewers(entities); outcome.has_failed()) {
        return outcome;
    }
    DDS_DataWriter* writer = nullptr;
    if (const core::Outcome outcome = create_writer(entities, topic, writer);
        outcome.has_failed()) {
        return outcome;
    }
    return core::begin_statistics(
        writer, entities.logMessageWriter,
        {static_cast<DDS_Long>(entities.rtpsHostId), static_cast<DDS_Long>(entities.rtpsAppId)});
}

}  // namespace

void create_statistics_entities(const QEL_KX_DDSEntities& entities) {
    if (!are_wanted(entities.participant)) {
        return;
    }
    if (const core::Outcome outcome = create(entities); outcome.has_failed()) {
        core::report("QEL_KX_DDSEntities_create", outcome.reason(), QEL_KX_LEVEL_WARNING);
    }
}

void delete_statistics_topic(DDS_DomainParticipant* participant) {
    if (DDS_Topic* topic = std::exchange(created_topic, nullptr); topic != nullptr) {
        DDS_DomainParticipant_delete_topic(participant, topic);
    }
}

}  // namespace orvane::admin

#include "admin/entities.hpp"

#include "admin/creation.hpp"
#include "admin/state.hpp"
#include "admin/statistics_entities.hpp"
#include "admin/topics.hpp"
#include "core/outcome.hpp"
#include "core/report.hpp"
#include "core/shared_field.hpp"
#include "orvane/core.h"
#include "pexa/osapi.h"
#include "types/typed_reader.hpp"
#include "types/typed_writer.hpp"

namespace orvane::admin {
namespace {

using core::load;
using core::Outcome;

using CommandReader = types::DataReader<QEL_KX_ADMIN_CommandRequest>;

constexpr const char* create_context = "QEL_KX_DDSEntities_create";

/// @name Steps of the creation
/// Each stores its entity in the record, where the teardown finds it.
/// @{
using Step = Outcome (*)(QEL_KX_DDSEntities& entities, QEL_KX_Orvane& logger);

Outcome obtain_participant(QEL_KX_DDSEntities& entities, QEL_KX_Orvane& logger) {
    entities.participant = load(logger.options->domain_participant);
    if (entities.participant != nullptr) {
        return Outcome::done();
    }
    entities.participantCreated = 1;
    return create_with_qos<DDS_DomainParticipantQos>(
        entities.participant,
        [&](DDS_DomainParticipantQos* qos) {
            return participant_qos(&entities, qos, logger.options);
        },
        "Unable to get Domain Participant QoS",
        [&](const DDS_DomainParticipantQos* qos) {
            return DDS_DomainParticipantFactory_create_participant(
                entities.participantFactory, load(logger.options->domain_id), qos, nullptr,
                DDS_STATUS_MASK_NONE);
        },
        "Unable to create Domain Participant");
}

Outcome read_identity(QEL_KX_DDSEntities& entities, QEL_KX_Orvane& logger) {
    ScopedQos<DDS_DomainParticipantQos> qos;
    if (DDS_DomainParticipantQos_initialize(qos.get()) != DDS_RETCODE_OK ||
        DDS_DomainParticipant_get_qos(entities.participant, qos.get()) != DDS_RETCODE_OK) {
        return Outcome::failed(
            "Unable to get Domain Participant QoS to create update HostId and AppId:");
    }
    entities.rtpsHostId = qos.get()->wire_protocol.rtps_host_id;
    entities.rtpsAppId = qos.get()->wire_protocol.rtps_app_id;
    if (logger.state != nullptr) {
        identify_state(logger, entities.rtpsHostId, entities.rtpsAppId,
                       DDS_DomainParticipant_get_domain_id(entities.participant));
    }
    return Outcome::done();
}

template <TopicOf Which>
Outcome obtain_topic_step(QEL_KX_DDSEntities& entities, QEL_KX_Orvane&) {
    return obtain_topic(entities, Which);
}

Outcome create_publisher(QEL_KX_DDSEntities& entities, QEL_KX_Orvane&) {
    return create_with_qos<DDS_PublisherQos>(
        entities.publisher, [&](DDS_PublisherQos* qos) { return publisher_qos(&entities, qos); },
        "Unable to get publisher QoS",
        [&](const DDS_PublisherQos* qos) {
            return DDS_DomainParticipant_create_publisher(entities.participant, qos, nullptr,
                                                          DDS_STATUS_MASK_NONE);
        },
        "Unable to create publisher");
}

Outcome create_subscriber(QEL_KX_DDSEntities& entities, QEL_KX_Orvane&) {
    return create_with_qos<DDS_SubscriberQos>(
        entities.subscriber, [&](DDS_SubscriberQos* qos) { return subscriber_qos(&entities, qos); },
        "Unable to get Subscriber QoS",
        [&](const DDS_SubscriberQos* qos) {
            return DDS_DomainParticipant_create_subscriber(entities.participant, qos, nullptr,
                                                           DDS_STATUS_MASK_NONE);
        },
        "Unable to create Subscriber");
}

/// What tells the three writers apart.
struct WriterRow {
    const char* topic_name;
    DDS_Topic* QEL_KX_DDSEntities::*topic;
    DDS_DataWriter* QEL_KX_DDSEntities::*writer;
    DDS_DataWriter* (*narrow)(DDS_DataWriter* writer);
    const char* qos_failure;
    const char* create_failure;
    /// Whether the code that writes also flushes. A profile has no say in it: without a flush, the
    /// last messages would stay in the batch.
    DDS_Boolean batches;
};

Outcome create_writer(QEL_KX_DDSEntities& entities, const WriterRow& row) {
    return create_with_qos<DDS_DataWriterQos>(
        entities.*row.writer,
        [&](DDS_DataWriterQos* qos) {
            const DDS_ReturnCode_t result = writer_qos(&entities, qos, row.topic_name);
            qos->batch.enable = row.batches;
            return result;
        },
        row.qos_failure,
        [&](const DDS_DataWriterQos* qos) -> DDS_DataWriter* {
            DDS_DataWriter* const writer = DDS_Publisher_create_datawriter(
                entities.publisher, entities.*row.topic, qos, nullptr, DDS_STATUS_MASK_NONE);
            return writer != nullptr ? row.narrow(writer) : nullptr;
        },
        row.create_failure);
}

Outcome create_log_writer(QEL_KX_DDSEntities& entities, QEL_KX_Orvane&) {
    static constexpr WriterRow row{QEL_KX_LOG_TOPIC_NAME,
                                   &QEL_KX_DDSEntities::logTopic,
                                   &QEL_KX_DDSEntities::logMessageWriter,
                                   types::DataWriter<QEL_KX_LogMessage>::narrow,
                                   "Unable to get QoS for LogMessage DataWriter",
                                   "Unable to create logMessage DataWriter",
                                   DDS_BOOLEAN_TRUE};
    return create_writer(entities, row);
}

Outcome create_state_writer(QEL_KX_DDSEntities& entities, QEL_KX_Orvane&) {
    static constexpr WriterRow row{QEL_KX_STATE_TOPIC_NAME,
                                   &QEL_KX_DDSEntities::stateTopic,
                                   &QEL_KX_DDSEntities::stateWriter,
                                   types::DataWriter<QEL_KX_ADMIN_State>::narrow,
                                   "Unable to get QoS of State's DataWriter",
                                   "Unable to create State DataWriter",
                                   DDS_BOOLEAN_FALSE};
    return create_writer(entities, row);
}

Outcome create_response_writer(QEL_KX_DDSEntities& entities, QEL_KX_Orvane&) {
    static constexpr WriterRow row{QEL_KX_COMMAND_RESPONSE_TOPIC_NAME,
                                   &QEL_KX_DDSEntities::commandResponseTopic,
                                   &QEL_KX_DDSEntities::commandResponseWriter,
                                   types::DataWriter<QEL_KX_ADMIN_CommandResponse>::narrow,
                                   "Unable to get QoS for CommandResponse DataWriter",
                                   "Unable to create CommandResponse DataWriter",
                                   DDS_BOOLEAN_FALSE};
    return create_writer(entities, row);
}

Outcome listen_for_state_readers(QEL_KX_DDSEntities& entities, QEL_KX_Orvane& logger) {
    entities.stateWriterListener.listener_data = &logger;
    entities.stateWriterListener.on_publication_matched =
        QEL_KX_DDSEntities_stateWriterOnPublicationMatched;
    const DDS_ReturnCode_t result = DDS_DataWriter_set_listener(
        entities.stateWriter, &entities.stateWriterListener, DDS_PUBLICATION_MATCHED_STATUS);
    return Outcome::done_if(result == DDS_RETCODE_OK, "Unable to set listener in State DataWrite");
}

Outcome begin_statistics(QEL_KX_DDSEntities& entities, QEL_KX_Orvane&) {
    create_statistics_entities(entities);
    return Outcome::done();
}

Outcome create_filtered_topic_step(QEL_KX_DDSEntities& entities, QEL_KX_Orvane&) {
    return create_filtered_topic(entities);
}

Outcome create_command_reader(QEL_KX_DDSEntities& entities, QEL_KX_Orvane&) {
    return create_with_qos<DDS_DataReaderQos>(
        entities.commandRequestReader,
        [&](DDS_DataReaderQos* qos) {
            return reader_qos(&entities, qos, QEL_KX_COMMAND_REQUEST_TOPIC_NAME);
        },
        "Unable to get QoS for CommandRequest Reader",
        [&](const DDS_DataReaderQos* qos) -> DDS_DataReader* {
            DDS_DataReader* const reader = DDS_Subscriber_create_datareader(
                entities.subscriber,
                DDS_ContentFilteredTopic_as_topicdescription(entities.commandRequestFilteredTopic),
                qos, nullptr, DDS_STATUS_MASK_NONE);
            return reader != nullptr ? CommandReader::narrow(reader) : nullptr;
        },
        "Unable to create CommandRequest DataReader");
}
/// @}

constexpr Step logging_steps[] = {
    obtain_participant,
    read_identity,
    obtain_topic_step<TopicOf::log>,
    obtain_topic_step<TopicOf::state>,
    create_publisher,
    create_log_writer,
    create_state_writer,
    listen_for_state_readers,
    begin_statistics,
};

constexpr Step administration_steps[] = {
    create_subscriber,          obtain_topic_step<TopicOf::command_request>,
    create_filtered_topic_step, obtain_topic_step<TopicOf::command_response>,
    create_command_reader,      create_response_writer,
};

Outcome build(QEL_KX_DDSEntities& entities, QEL_KX_Orvane& logger) {
    DDS_DomainParticipant* const shared = load(logger.options->domain_participant);
    entities.qosLibrary = load(logger.options->qos_library);
    entities.qosProfile = load(logger.options->qos_profile);
    entities.participantFactory = shared != nullptr
                                      ? DDS_DomainParticipant_get_participant_factoryI(shared)
                                      : DDS_DomainParticipantFactory_get_instance();
    if (entities.qosLibrary != nullptr && entities.qosProfile != nullptr &&
        !profile_exists(entities, entities.qosLibrary, entities.qosProfile)) {
        core::report(create_context, "QoS Library and Profile cannot be found, using default QoS",
                     QEL_KX_LEVEL_WARNING);
    }
    set_initial_state_sent(0);

    if (const Outcome made = core::take_steps(logging_steps, entities, logger);
        made.has_failed() || load(logger.options->remote_administration_enabled) == 0) {
        return made;
    }
    return core::take_steps(administration_steps, entities, logger);
}

}  // namespace

void initialize_entities(QEL_KX_DDSEntities* entities) {
    if (entities == nullptr) {
        core::report("QEL_KX_DDSEntities_initialize", "QEL_KX_DDSEntities is NULL");
        return;
    }
    *entities = QEL_KX_DDSEntities{};
}

QEL_KX_DDSEntities* create_entities(QEL_KX_Orvane* logger) {
    if (logger == nullptr) {
        core::report(create_context, "QEL_KX_Orvane is NULL");
        return nullptr;
    }
    if (logger->options == nullptr) {
        core::report(create_context, "QEL_KX_Options is NULL, expected initialized variable");
        return nullptr;
    }
    QEL_KX_DDSEntities* entities = nullptr;
    QELOsapiHeap_allocateStructure(&entities, QEL_KX_DDSEntities);
    if (entities == nullptr) {
        core::report(create_context, "Unable to allocate memory for QEL_KX_DDSEntities");
        return nullptr;
    }
    initialize_entities(entities);
    if (const Outcome built = build(*entities, *logger); built.has_failed()) {
        core::report(create_context, built);
        destroy_entities(entities);
        return nullptr;
    }
    return entities;
}

}  // namespace orvane::admin

namespace admin = orvane::admin;

QEL_KX_DDSEntities* QEL_KX_DDSEntities_create(QEL_KX_Orvane* logger) {
    return admin::create_entities(logger);
}

void QEL_KX_DDSEntities_initialize(QEL_KX_DDSEntities* entities) {
    admin::initialize_entities(entities);
}

DDS_UnsignedLong QEL_KX_DDSEntities_getRtpsHostId(const QEL_KX_DDSEntities* entities) {
    return admin::field_of<&QEL_KX_DDSEntities::rtpsHostId>(entities);
}

DDS_UnsignedLong QEL_KX_DDSEntities_getRtpsAppId(const QEL_KX_DDSEntities* entities) {
    return admin::field_of<&QEL_KX_DDSEntities::rtpsAppId>(entities);
}

DDS_DomainParticipant* QEL_KX_DDSEntities_getDomainParticipant(const QEL_KX_DDSEntities* entities) {
    return admin::field_of<&QEL_KX_DDSEntities::participant>(entities);
}

QEL_KX_LogMessageDataWriter* QEL_KX_DDSEntities_getLogMessageWriter(
    const QEL_KX_DDSEntities* entities) {
    return admin::field_of<&QEL_KX_DDSEntities::logMessageWriter>(entities);
}

QEL_KX_ADMIN_StateDataWriter* QEL_KX_DDSEntities_getStateWriter(
    const QEL_KX_DDSEntities* entities) {
    return admin::field_of<&QEL_KX_DDSEntities::stateWriter>(entities);
}

QEL_KX_ADMIN_CommandRequestDataReader* QEL_KX_DDSEntities_getCommandRequestReader(
    const QEL_KX_DDSEntities* entities) {
    return admin::field_of<&QEL_KX_DDSEntities::commandRequestReader>(entities);
}

QEL_KX_ADMIN_CommandResponseDataWriter* QEL_KX_DDSEntities_getCommandResponseWriter(
    const QEL_KX_DDSEntities* entities) {
    return admin::field_of<&QEL_KX_DDSEntities::commandResponseWriter>(entities);
}

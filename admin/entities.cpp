#include "admin/entities.hpp"

#include "admin/creation.hpp"
#include "admin/state.hpp"
#include "admin/topics.hpp"
#include "orvane/core.h"
#include "pexa/osapi.h"

namespace orvane::admin {
namespace {

constexpr const char* create_context = "QEL_KX_DDSEntities_create";
constexpr const char* delete_context = "QEL_KX_DDSEntities_deleteContainedEntities";

/// @name Steps of the creation
/// Each leaves what it made in the record, where the teardown finds it, and returns NULL or the
/// text that says what failed.
/// @{
using Step = const char* (*)(QEL_KX_DDSEntities& entities, QEL_KX_Orvane& logger);

const char* obtain_participant(QEL_KX_DDSEntities& entities, QEL_KX_Orvane& logger) {
    entities.participant = QEL_KX_Options_getDomainParticipant(logger.options);
    if (entities.participant != nullptr) {
        return nullptr;
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
                entities.participantFactory, QEL_KX_Options_getDomainId(logger.options), qos,
                nullptr, DDS_STATUS_MASK_NONE);
        },
        "Unable to create Domain Participant");
}

const char* read_identity(QEL_KX_DDSEntities& entities, QEL_KX_Orvane& logger) {
    ScopedQos<DDS_DomainParticipantQos> qos;
    if (DDS_DomainParticipantQos_initialize(qos.get()) != DDS_RETCODE_OK ||
        DDS_DomainParticipant_get_qos(entities.participant, qos.get()) != DDS_RETCODE_OK) {
        return "Unable to get Domain Participant QoS to create update HostId and AppId:";
    }
    entities.rtpsHostId = qos.get()->wire_protocol.rtps_host_id;
    entities.rtpsAppId = qos.get()->wire_protocol.rtps_app_id;
    if (logger.state != nullptr) {
        identify_state(logger, entities.rtpsHostId, entities.rtpsAppId,
                       DDS_DomainParticipant_get_domain_id(entities.participant));
    }
    return nullptr;
}

template <TopicOf Which>
const char* obtain_topic_step(QEL_KX_DDSEntities& entities, QEL_KX_Orvane&) {
    return obtain_topic(entities, Which);
}

const char* create_publisher(QEL_KX_DDSEntities& entities, QEL_KX_Orvane&) {
    return create_with_qos<DDS_PublisherQos>(
        entities.publisher, [&](DDS_PublisherQos* qos) { return publisher_qos(&entities, qos); },
        "Unable to get publisher QoS",
        [&](const DDS_PublisherQos* qos) {
            return DDS_DomainParticipant_create_publisher(entities.participant, qos, nullptr,
                                                          DDS_STATUS_MASK_NONE);
        },
        "Unable to create publisher");
}

const char* create_subscriber(QEL_KX_DDSEntities& entities, QEL_KX_Orvane&) {
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
template <typename Writer>
struct WriterRow {
    const char* topic_name;
    DDS_Topic* QEL_KX_DDSEntities::*topic;
    Writer* QEL_KX_DDSEntities::*writer;
    Writer* (*narrow)(DDS_DataWriter* writer);
    const char* qos_failure;
    const char* create_failure;
    /// Whether whoever writes also flushes. A profile has no say in it: without the flush, what is
    /// written last would stay.
    DDS_Boolean batches;
};

template <typename Writer>
const char* create_writer(QEL_KX_DDSEntities& entities, const WriterRow<Writer>& row) {
    return create_with_qos<DDS_DataWriterQos>(
        entities.*row.writer,
        [&](DDS_DataWriterQos* qos) {
            const DDS_ReturnCode_t result = writer_qos(&entities, qos, row.topic_name);
            qos->batch.enable = row.batches;
            return result;
        },
        row.qos_failure,
        [&](const DDS_DataWriterQos* qos) -> Writer* {
            DDS_DataWriter* const writer = DDS_Publisher_create_datawriter(
                entities.publisher, entities.*row.topic, qos, nullptr, DDS_STATUS_MASK_NONE);
            return writer != nullptr ? row.narrow(writer) : nullptr;
        },
        row.create_failure);
}

const char* create_log_writer(QEL_KX_DDSEntities& entities, QEL_KX_Orvane&) {
    static constexpr WriterRow<QEL_KX_LogMessageDataWriter> row{
        QEL_KX_LOG_TOPIC_NAME,
        &QEL_KX_DDSEntities::logTopic,
        &QEL_KX_DDSEntities::logMessageWriter,
        QEL_KX_LogMessageDataWriter_narrow,
        "Unable to get QoS for LogMessage DataWriter",
        "Unable to create logMessage DataWriter",
        DDS_BOOLEAN_TRUE};
    return create_writer(entities, row);
}

const char* create_state_writer(QEL_KX_DDSEntities& entities, QEL_KX_Orvane&) {
    static constexpr WriterRow<QEL_KX_ADMIN_StateDataWriter> row{
        QEL_KX_STATE_TOPIC_NAME,
        &QEL_KX_DDSEntities::stateTopic,
        &QEL_KX_DDSEntities::stateWriter,
        QEL_KX_ADMIN_StateDataWriter_narrow,
        "Unable to get QoS of State's DataWriter",
        "Unable to create State DataWriter",
        DDS_BOOLEAN_FALSE};
    return create_writer(entities, row);
}

const char* create_response_writer(QEL_KX_DDSEntities& entities, QEL_KX_Orvane&) {
    static constexpr WriterRow<QEL_KX_ADMIN_CommandResponseDataWriter> row{
        QEL_KX_COMMAND_RESPONSE_TOPIC_NAME,
        &QEL_KX_DDSEntities::commandResponseTopic,
        &QEL_KX_DDSEntities::commandResponseWriter,
        QEL_KX_ADMIN_CommandResponseDataWriter_narrow,
        "Unable to get QoS for CommandResponse DataWriter",
        "Unable to create CommandResponse DataWriter",
        DDS_BOOLEAN_FALSE};
    return create_writer(entities, row);
}

const char* listen_for_state_readers(QEL_KX_DDSEntities& entities, QEL_KX_Orvane& logger) {
    entities.stateWriterListener.listener_data = &logger;
    entities.stateWriterListener.on_publication_matched =
        QEL_KX_DDSEntities_stateWriterOnPublicationMatched;
    const DDS_ReturnCode_t result = DDS_DataWriter_set_listener(
        QEL_KX_ADMIN_StateDataWriter_as_datawriter(entities.stateWriter),
        &entities.stateWriterListener, DDS_PUBLICATION_MATCHED_STATUS);
    return result == DDS_RETCODE_OK ? nullptr : "Unable to set listener in State DataWrite";
}

const char* create_filtered_topic_step(QEL_KX_DDSEntities& entities, QEL_KX_Orvane&) {
    return create_filtered_topic(entities);
}

const char* create_command_reader(QEL_KX_DDSEntities& entities, QEL_KX_Orvane&) {
    return create_with_qos<DDS_DataReaderQos>(
        entities.commandRequestReader,
        [&](DDS_DataReaderQos* qos) {
            return reader_qos(&entities, qos, QEL_KX_COMMAND_REQUEST_TOPIC_NAME);
        },
        "Unable to get QoS for CommandRequest Reader",
        [&](const DDS_DataReaderQos* qos) -> QEL_KX_ADMIN_CommandRequestDataReader* {
            DDS_DataReader* const reader = DDS_Subscriber_create_datareader(
                entities.subscriber,
                DDS_ContentFilteredTopic_as_topicdescription(entities.commandRequestFilteredTopic),
                qos, nullptr, DDS_STATUS_MASK_NONE);
            return reader != nullptr ? QEL_KX_ADMIN_CommandRequestDataReader_narrow(reader)
                                     : nullptr;
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
};

constexpr Step administration_steps[] = {
    create_subscriber,          obtain_topic_step<TopicOf::command_request>,
    create_filtered_topic_step, obtain_topic_step<TopicOf::command_response>,
    create_command_reader,      create_response_writer,
};

template <std::size_t Count>
const char* take_steps(const Step (&steps)[Count], QEL_KX_DDSEntities& entities,
                       QEL_KX_Orvane& logger) {
    for (const Step step : steps) {
        if (const char* const failure = step(entities, logger); failure != nullptr) {
            return failure;
        }
    }
    return nullptr;
}

void report_creation(const char* text, DDS_Long level) {
    QEL_KX_Orvane_printMessage(text, create_context, level);
}

const char* build(QEL_KX_DDSEntities& entities, QEL_KX_Orvane& logger) {
    DDS_DomainParticipant* const shared = QEL_KX_Options_getDomainParticipant(logger.options);
    entities.qosLibrary = QEL_KX_Options_getQosLibrary(logger.options);
    entities.qosProfile = QEL_KX_Options_getQosProfile(logger.options);
    entities.participantFactory = shared != nullptr
                                      ? DDS_DomainParticipant_get_participant_factoryI(shared)
                                      : DDS_DomainParticipantFactory_get_instance();
    if (entities.qosLibrary != nullptr && entities.qosProfile != nullptr &&
        !profile_exists(entities, entities.qosLibrary, entities.qosProfile)) {
        report_creation("QoS Library and Profile cannot be found, using default QoS",
                        QEL_KX_LEVEL_WARNING);
    }
    set_initial_state_sent(0);

    if (const char* const failure = take_steps(logging_steps, entities, logger);
        failure != nullptr) {
        return failure;
    }
    if (QEL_KX_Options_isRemoteAdministrationEnabled(logger.options) == 0) {
        return nullptr;
    }
    return take_steps(administration_steps, entities, logger);
}

/// Reports failing steps of the teardown and remembers the last one.
class Teardown {
public:
    void note(DDS_ReturnCode_t result, const char* failure) {
        if (result != DDS_RETCODE_OK) {
            QEL_KX_Orvane_printMessage(failure, delete_context, QEL_KX_LEVEL_WARNING);
            last_failure_ = result;
        }
    }
    [[nodiscard]] DDS_ReturnCode_t result() const noexcept { return last_failure_; }

private:
    DDS_ReturnCode_t last_failure_ = DDS_RETCODE_OK;
};

/// The names and the factory stay, for the getters; nothing is left that could be deleted again.
void forget_entities(QEL_KX_DDSEntities& entities) {
    QEL_KX_DDSEntities empty{};
    empty.participantFactory = entities.participantFactory;
    empty.rtpsHostId = entities.rtpsHostId;
    empty.rtpsAppId = entities.rtpsAppId;
    empty.qosLibrary = entities.qosLibrary;
    empty.qosProfile = entities.qosProfile;
    entities = empty;
}

}  // namespace

void initialize_entities(QEL_KX_DDSEntities* entities) {
    if (entities == nullptr) {
        QEL_KX_Orvane_printMessage("QEL_KX_DDSEntities is NULL", "QEL_KX_DDSEntities_initialize",
                                   QEL_KX_LEVEL_ERROR);
        return;
    }
    *entities = QEL_KX_DDSEntities{};
}

QEL_KX_DDSEntities* create_entities(QEL_KX_Orvane* logger) {
    if (logger == nullptr) {
        report_creation("QEL_KX_Orvane is NULL", QEL_KX_LEVEL_ERROR);
        return nullptr;
    }
    if (logger->options == nullptr) {
        report_creation("QEL_KX_Options is NULL, expected initialized variable",
                        QEL_KX_LEVEL_ERROR);
        return nullptr;
    }
    QEL_KX_DDSEntities* entities = nullptr;
    QELOsapiHeap_allocateStructure(&entities, QEL_KX_DDSEntities);
    if (entities == nullptr) {
        report_creation("Unable to allocate memory for QEL_KX_DDSEntities", QEL_KX_LEVEL_ERROR);
        return nullptr;
    }
    initialize_entities(entities);
    if (const char* const failure = build(*entities, *logger); failure != nullptr) {
        report_creation(failure, QEL_KX_LEVEL_ERROR);
        destroy_entities(entities);
        return nullptr;
    }
    return entities;
}

void destroy_entities(QEL_KX_DDSEntities* entities) {
    if (entities == nullptr) {
        return;
    }
    delete_contained_entities(entities);
    QELOsapiHeap_freeStructure(entities);
}

DDS_ReturnCode_t delete_contained_entities(QEL_KX_DDSEntities* entities) {
    if (entities == nullptr) {
        QEL_KX_Orvane_printMessage("QEL_KX_DDSEntities is NULL. Cannot delete it again",
                                   delete_context, QEL_KX_LEVEL_WARNING);
        return DDS_RETCODE_OK;
    }
    DDS_DomainParticipant* const participant = entities->participant;
    if (participant == nullptr) {
        return DDS_RETCODE_OK;
    }
    Teardown teardown;
    if (entities->subscriber != nullptr) {
        teardown.note(DDS_Subscriber_delete_contained_entities(entities->subscriber),
                      "Unable to delete subscriber's contained entities");
        teardown.note(DDS_DomainParticipant_delete_subscriber(participant, entities->subscriber),
                      "Unable to delete subscriber");
    }
    if (entities->publisher != nullptr) {
        teardown.note(DDS_Publisher_delete_contained_entities(entities->publisher),
                      "Unable to delete publisher's contained entities");
        teardown.note(DDS_DomainParticipant_delete_publisher(participant, entities->publisher),
                      "Unable to delete publisher");
    }
    if (entities->commandRequestFilteredTopic != nullptr) {
        teardown.note(DDS_DomainParticipant_delete_contentfilteredtopic(
                          participant, entities->commandRequestFilteredTopic),
                      "Unable to delete commandRequest Content Filtered Topic");
    }
    for (DDS_Topic* const topic : entities->createdTopics) {
        if (topic != nullptr) {
            DDS_DomainParticipant_delete_topic(participant, topic);
        }
    }
    if (entities->participantCreated != 0) {
        teardown.note(DDS_DomainParticipant_delete_contained_entities(participant),
                      "Unable to delete contained entities from Domain Participant");
        teardown.note(DDS_DomainParticipantFactory_delete_participant(entities->participantFactory,
                                                                      participant),
                      "Unable to delete participant");
    }
    forget_entities(*entities);
    return teardown.result();
}

}  // namespace orvane::admin

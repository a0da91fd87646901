#include "admin/commands.hpp"
#include "admin/entities.hpp"
#include "admin/entity_qos.hpp"
#include "admin/logger_bridge.hpp"
#include "admin/state.hpp"
#include "admin/translations.hpp"
#include "orvane/admin.h"
#include "orvane/core.h"

namespace admin = orvane::admin;

namespace {

/// The field as it is, and nothing for a record that is not there.
template <auto Field>
auto field_of(const QEL_KX_DDSEntities* entities) {
    using Value = std::remove_cvref_t<decltype(entities->*Field)>;
    return entities != nullptr ? entities->*Field : Value{};
}

}  // namespace

QEL_KX_DDSEntities* QEL_KX_DDSEntities_create(QEL_KX_Orvane* logger) {
    return admin::create_entities(logger);
}

void QEL_KX_DDSEntities_destroy(QEL_KX_DDSEntities* entities) {
    admin::destroy_entities(entities);
}

DDS_ReturnCode_t QEL_KX_DDSEntities_deleteContainedEntities(QEL_KX_DDSEntities* entities) {
    return admin::delete_contained_entities(entities);
}

void QEL_KX_DDSEntities_initialize(QEL_KX_DDSEntities* entities) {
    admin::initialize_entities(entities);
}

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

DDS_UnsignedLong QEL_KX_DDSEntities_getRtpsHostId(const QEL_KX_DDSEntities* entities) {
    return field_of<&QEL_KX_DDSEntities::rtpsHostId>(entities);
}

DDS_UnsignedLong QEL_KX_DDSEntities_getRtpsAppId(const QEL_KX_DDSEntities* entities) {
    return field_of<&QEL_KX_DDSEntities::rtpsAppId>(entities);
}

DDS_DomainParticipant* QEL_KX_DDSEntities_getDomainParticipant(const QEL_KX_DDSEntities* entities) {
    return field_of<&QEL_KX_DDSEntities::participant>(entities);
}

QEL_KX_LogMessageDataWriter* QEL_KX_DDSEntities_getLogMessageWriter(
    const QEL_KX_DDSEntities* entities) {
    return field_of<&QEL_KX_DDSEntities::logMessageWriter>(entities);
}

QEL_KX_ADMIN_StateDataWriter* QEL_KX_DDSEntities_getStateWriter(
    const QEL_KX_DDSEntities* entities) {
    return field_of<&QEL_KX_DDSEntities::stateWriter>(entities);
}

QEL_KX_ADMIN_CommandRequestDataReader* QEL_KX_DDSEntities_getCommandRequestReader(
    const QEL_KX_DDSEntities* entities) {
    return field_of<&QEL_KX_DDSEntities::commandRequestReader>(entities);
}

QEL_KX_ADMIN_CommandResponseDataWriter* QEL_KX_DDSEntities_getCommandResponseWriter(
    const QEL_KX_DDSEntities* entities) {
    return field_of<&QEL_KX_DDSEntities::commandResponseWriter>(entities);
}

QELBool QEL_KX_DDSEntities_hasInitialStateBeenSent(void) {
    return admin::initial_state_sent() ? 1 : 0;
}

void QEL_KX_DDSEntities_stateWriterOnPublicationMatched(void* listenerData, DDS_DataWriter* writer,
                                                        const DDS_PublicationMatchedStatus*) {
    admin::publish_initial_state(*static_cast<QEL_KX_Orvane*>(listenerData), writer);
}

DDS_Boolean QEL_KX_Orvane_writeState(QEL_KX_Orvane* logger) {
    return admin::write_state(*logger) ? 1 : 0;
}

void QEL_KX_Orvane_disable(void) {
    admin::disable();
}

void QEL_KX_Orvane_initialize(QEL_KX_Orvane* logger) {
    admin::initialize_logger(logger);
}

void QEL_KX_Orvane_CommandRequestListener_on_data_available(void* logger, DDS_DataReader* reader) {
    admin::take_commands(*static_cast<QEL_KX_Orvane*>(logger), reader);
}

void QEL_KX_Orvane_processCommand(QEL_KX_Orvane* logger, QEL_KX_ADMIN_CommandRequest* request) {
    admin::process_command(*logger, *request);
}

DDS_ReturnCode_t QEL_KX_Orvane_setFilterLevel(QEL_KX_Orvane* logger, DDS_Long level) {
    return admin::set_filter_level(*logger, level);
}

void QEL_KX_Orvane_writeDevice(const PEXA_Config_LoggerDevice*,
                               const PEXA_Config_LogMessage* message) {
    admin::write_device(message);
}

void QEL_KX_Orvane_maskSystemVerbosity(PEXA_Config_LogVerbosity* saved) {
    admin::mask_verbosity(saved);
}

void QEL_KX_Orvane_unmaskSystemVerbosity(const PEXA_Config_LogVerbosity* saved) {
    admin::unmask_verbosity(saved);
}

void QEL_KX_Orvane_updateQELLoggerCategoryAndVerbosityState(QEL_KX_Orvane* logger) {
    admin::refresh_verbosities(*logger);
}

void QEL_KX_Orvane_updateQELLoggerPrintFormatState(QEL_KX_Orvane* logger) {
    admin::refresh_print_format(*logger);
}

void QEL_KX_Orvane_setQELLoggerVerbosityByCategory(QEL_KX_Orvane* logger,
                                                   PEXA_Config_LogCategory category,
                                                   PEXA_Config_LogVerbosity verbosity) {
    admin::set_middleware_verbosity(*logger, category, verbosity);
}

DDS_Boolean QEL_KX_Orvane_setQELLoggerPrintFormat(QEL_KX_Orvane* logger,
                                                  PEXA_Config_LogPrintFormat format) {
    return admin::set_middleware_print_format(*logger, format) ? 1 : 0;
}

QEL_KX_ADMIN_QELLoggerCategory QEL_KX_translateFromQELLoggerCategoryToKXCategory(
    DDS_Long category) {
    return static_cast<QEL_KX_ADMIN_QELLoggerCategory>(
        admin::categories.to_library(static_cast<DDS_UnsignedLong>(category)));
}

PEXA_Config_LogCategory QEL_KX_translateFromKXCategoryToQELLoggerCategory(DDS_Long category) {
    return static_cast<PEXA_Config_LogCategory>(admin::categories.to_middleware(category));
}

QEL_KX_ADMIN_QELLoggerVerbosity QEL_KX_translateFromQELLoggerVerbosityToKXVerbosity(
    PEXA_Config_LogVerbosity verbosity) {
    return static_cast<QEL_KX_ADMIN_QELLoggerVerbosity>(admin::verbosities.to_library(verbosity));
}

PEXA_Config_LogVerbosity QEL_KX_translateFromKXVerbosityToQELLoggerVerbosity(DDS_Long verbosity) {
    return admin::verbosities.to_middleware(verbosity);
}

QEL_KX_ADMIN_QELLoggerPrintFormat QEL_KX_translateFromQELLoggerPrintFormatToKXPrintFormat(
    PEXA_Config_LogPrintFormat format) {
    return static_cast<QEL_KX_ADMIN_QELLoggerPrintFormat>(admin::print_formats.to_library(format));
}

PEXA_Config_LogPrintFormat QEL_KX_translateFromKXPrintFormatToQELLoggerPrintFormat(
    DDS_Long format) {
    return admin::print_formats.to_middleware(format);
}

DDS_Long QEL_KX_translateFromQELLoggerLogLevelToKXLevel(DDS_Long level) {
    return admin::levels.to_library(static_cast<DDS_UnsignedLong>(level));
}

DDS_ReturnCode_t QEL_KX_translateFromKXLogLevelToString(DDS_Long level, char* buffer) {
    return admin::copy_level_name(level, buffer);
}

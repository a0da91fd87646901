#include "core/report.hpp"
#include "core/shared_field.hpp"
#include "orvane/xml.h"

namespace orvane::xml {
namespace {

DDS_Boolean end(DDS_Boolean result, const char* message, DDS_Long level) {
    core::report("QEL_KX_XMLConfig_startWithXMLConfiguration", message, level);
    return result;
}

DDS_Boolean refuse(const char* message) {
    return end(DDS_BOOLEAN_FALSE, message, QEL_KX_LEVEL_ERROR);
}

DDS_Boolean leave_alone(const char* message) {
    return end(DDS_BOOLEAN_TRUE, message, QEL_KX_LEVEL_INFO);
}

DDS_Boolean start(DDS_DomainParticipant* participant, QEL_KX_Options* options,
                  const char* application_kind) {
    if (options == nullptr) {
        return refuse("no options found in XML configuration");
    }
    if (participant == nullptr) {
        return refuse("invalid DomainParticipant");
    }
    if (core::load(options->enabled) == 0) {
        return leave_alone("KX not enabled in XML Options. It won't be created");
    }
    if (QEL_KX_Orvane_isOrvaneRunning() != 0) {
        return leave_alone("KX already running. XML Options don't apply");
    }
    QEL_KX_Options_setDomainParticipant(options, participant);
    if (application_kind != nullptr &&
        QEL_KX_Options_setApplicationKind(options, application_kind) != DDS_RETCODE_OK) {
        return refuse("could not set the application kind");
    }
    if (QEL_KX_Orvane_setOptions(options) == DDS_BOOLEAN_FALSE) {
        return refuse("could not set KX options; instance already created");
    }
    return QEL_KX_Orvane_getInstance() != nullptr ? DDS_BOOLEAN_TRUE
                                                  : refuse("Orvane could not be started");
}

}  // namespace
}  // namespace orvane::xml

DDS_Boolean QEL_KX_XMLConfig_startWithXMLConfiguration(DDS_DomainParticipant* participant,
                                                       QEL_KX_Options* options,
                                                       const char* applicationKind) {
    return orvane::xml::start(participant, options, applicationKind);
}

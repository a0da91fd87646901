#include "c_layout.h"

#include "orvane/types.h"

#define MEMBER(T, member) \
    { #T, sizeof(T), #member, offsetof(T, member) }

const CLayout c_layouts[] = {
    MEMBER(QEL_KX_HostAndAppId, rtps_host_id),
    MEMBER(QEL_KX_HostAndAppId, rtps_app_id),
    MEMBER(QEL_KX_LogMessage, hostAndAppId),
    MEMBER(QEL_KX_LogMessage, level),
    MEMBER(QEL_KX_LogMessage, category),
    MEMBER(QEL_KX_LogMessage, message),
    MEMBER(QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity, category),
    MEMBER(QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity, verbosity),
    MEMBER(QEL_KX_ADMIN_State, hostAndAppId),
    MEMBER(QEL_KX_ADMIN_State, administrationDomainId),
    MEMBER(QEL_KX_ADMIN_State, state),
    MEMBER(QEL_KX_ADMIN_State, applicationKind),
    MEMBER(QEL_KX_ADMIN_State, filterLevel),
    MEMBER(QEL_KX_ADMIN_State, qelLoggerVerbosities),
    MEMBER(QEL_KX_ADMIN_State, qelLoggerPrintFormat),
    MEMBER(QEL_KX_ADMIN_Command, _d),
    MEMBER(QEL_KX_ADMIN_Command, _u.filterLevel),
    MEMBER(QEL_KX_ADMIN_Command, _u.categoryAndVerbosity),
    MEMBER(QEL_KX_ADMIN_Command, _u.printFormat),
    MEMBER(QEL_KX_ADMIN_CommandRequest, targetHostAndAppId),
    MEMBER(QEL_KX_ADMIN_CommandRequest, originatorHostAndAppId),
    MEMBER(QEL_KX_ADMIN_CommandRequest, invocation),
    MEMBER(QEL_KX_ADMIN_CommandRequest, command),
    MEMBER(QEL_KX_ADMIN_CommandResponse, hostAndAppId),
    MEMBER(QEL_KX_ADMIN_CommandResponse, originatorHostAndAppId),
    MEMBER(QEL_KX_ADMIN_CommandResponse, invocation),
    MEMBER(QEL_KX_ADMIN_CommandResponse, commandResult),
    MEMBER(QEL_KX_ADMIN_CommandResponse, message),
};
const size_t c_layout_count = sizeof c_layouts / sizeof c_layouts[0];

int c_round_trip(void) {
    QEL_KX_LogMessage* sent = QEL_KX_LogMessageTypeSupport_create_data();
    QEL_KX_LogMessage* received = QEL_KX_LogMessageTypeSupport_create_data();
    char buffer[128];
    DDS_UnsignedLong length = sizeof buffer;
    int succeeded = 0;
    if (sent != NULL && received != NULL) {
        sent->level = 42;
        sent->message[0] = 'C';
        succeeded = QEL_KX_LogMessageTypeSupport_serialize_data_to_cdr_buffer(
                        buffer, &length, sent) == DDS_RETCODE_OK &&
                    QEL_KX_LogMessageTypeSupport_deserialize_data_from_cdr_buffer(
                        received, buffer, length) == DDS_RETCODE_OK &&
                    received->level == 42 && received->message[0] == 'C';
    }
    QEL_KX_LogMessageTypeSupport_delete_data(sent);
    QEL_KX_LogMessageTypeSupport_delete_data(received);
    return succeeded;
}

#include "c_layout.h"

#include "orvane/orvane.h"

const size_t c_layout[] = {
    sizeof(QEL_KX_Options),
    offsetof(QEL_KX_Options, thread),
    offsetof(QEL_KX_Options, log_infrastructure_messages),
    sizeof(QEL_KX_MessageQueueElement),
    offsetof(QEL_KX_MessageQueueElement, categoryBuffer),
    sizeof(QEL_KX_MessageQueue),
    sizeof(LogMessageWriteThread),
    offsetof(LogMessageWriteThread, threadId),
    sizeof(QEL_KX_Orvane),
    offsetof(QEL_KX_Orvane, clock),
    sizeof(QEL_KX_LogMessageParams),
    offsetof(QEL_KX_LogMessageParams, timestamp),
    sizeof(QEL_KX_LogLevel),
};
const size_t c_layout_count = sizeof c_layout / sizeof c_layout[0];

int c_logging_without_instance(void) {
    QEL_KX_LogMessageParams params = {QEL_KX_LEVEL_INFO, "text", "category", {1, 2}};
    const int succeeded = QEL_KX_Orvane_info(NULL, "text") == DDS_RETCODE_OK &&
                          QEL_KX_Orvane_logMessageWithParams(NULL, &params) == DDS_RETCODE_OK;
    return succeeded ? 0 : 1;
}

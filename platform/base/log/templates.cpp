#include "pexa/log.h"

const QELLogMessageTemplate DDS_LOG_BAD_PARAMETER_s = {"bad parameter: %s"};
const QELLogMessageTemplate DDS_LOG_PRECONDITION_NOT_MET_s = {"precondition not met: %s"};
const QELLogMessageTemplate DDS_LOG_SEQUENCE_NOT_OWNER = {"sequence does not own its buffer"};
const QELLogMessageTemplate DDS_LOG_SET_FAILURE_s = {"could not set %s"};
const QELLogMessageTemplate DDS_LOG_GET_FAILURE_s = {"could not get %s"};
const QELLogMessageTemplate DDS_LOG_CREATE_FAILURE_s = {"could not create %s"};
const QELLogMessageTemplate DDS_LOG_MEMORY_ALLOCATED_dd = {
    "memory allocated: maximum %d becomes %d"};
const QELLogMessageTemplate QEL_LOG_ASSERT_FAILURE_s = {"assertion failed: %s"};
const QELLogMessageTemplate QEL_LOG_INSUFFICIENT_SPACE_FAILURE_dd = {
    "insufficient space: %d available, %d needed"};
const QELLogMessageTemplate QEL_LOG_MALLOC_FAILURE_d = {"could not allocate %d bytes"};
const QELLogMessageTemplate QEL_LOG_ANY_FAILURE_s = {"%s failed"};
const QELLogMessageTemplate QEL_LOG_ANY_s = {"%s"};

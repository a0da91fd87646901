#include "platform/dds/interface/operation.hpp"

#include "pexa/log.h"

namespace pexa::dds {

namespace {

DDS_ReturnCode_t report(const char* context, const QELLogMessageTemplate& message, const char* text,
                        DDS_ReturnCode_t code) {
    QELLog_printContextAndMsg(QEL_LOG_MODULE_DDS, DDS_SUBMODULE_MASK_ENTITY, QEL_LOG_LEVEL_ERROR,
                              context, &message, text);
    return code;
}

}  // namespace

DDS_ReturnCode_t Operation::bad_parameter(const char* argument) const {
    return report(name_, DDS_LOG_BAD_PARAMETER_s, argument, DDS_RETCODE_BAD_PARAMETER);
}

DDS_ReturnCode_t Operation::precondition_not_met(const char* what) const {
    return report(name_, DDS_LOG_PRECONDITION_NOT_MET_s, what, DDS_RETCODE_PRECONDITION_NOT_MET);
}

DDS_ReturnCode_t Operation::out_of_memory() const {
    return report(name_, QEL_LOG_ANY_FAILURE_s, "memory allocation", DDS_RETCODE_OUT_OF_RESOURCES);
}

DDS_ReturnCode_t Operation::not_created(const char* what, DDS_ReturnCode_t reason) const {
    return report(name_, DDS_LOG_CREATE_FAILURE_s, what, reason);
}

DDS_ReturnCode_t Operation::failed(const char* what, DDS_ReturnCode_t reason) const {
    return report(name_, QEL_LOG_ANY_FAILURE_s, what, reason);
}

void Operation::warn(const char* text) const {
    QELLog_printContextAndMsg(QEL_LOG_MODULE_DDS, DDS_SUBMODULE_MASK_ENTITY, QEL_LOG_LEVEL_WARNING,
                              name_, &QEL_LOG_ANY_s, text);
}

}  // namespace pexa::dds

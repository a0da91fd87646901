#include "platform/dds/interface/operation.hpp"

#include <string>

#include "pexa/log.h"
#include "platform/internal/standard_error.hpp"

namespace pexa::dds {

namespace {

Status report(const char* context, const QELLogMessageTemplate& message, const char* text,
              Status status) {
    QELLog_printContextAndMsg(QEL_LOG_MODULE_DDS, DDS_SUBMODULE_MASK_ENTITY, QEL_LOG_LEVEL_ERROR,
                              context, &message, text);
    return status;
}

}  // namespace

Status Operation::bad_parameter(const char* argument) const {
    return report(name_, DDS_LOG_BAD_PARAMETER_s, argument, Status::bad_parameter);
}

Status Operation::precondition_not_met(const char* condition) const {
    return report(name_, DDS_LOG_PRECONDITION_NOT_MET_s, condition, Status::precondition_not_met);
}

Status Operation::out_of_memory() const {
    return report(name_, QEL_LOG_ANY_FAILURE_s, "memory allocation", Status::out_of_resources);
}

Status Operation::not_created(const char* object, Status reason) const {
    return report(name_, DDS_LOG_CREATE_FAILURE_s, object, reason);
}

Status Operation::failed(const char* step, Status reason) const {
    return report(name_, QEL_LOG_ANY_FAILURE_s, step, reason);
}

Status Operation::not_allowed(const char* topic) const {
    const std::string text =
        std::string("the permissions of the participant do not allow this for the topic '") +
        topic + "'";
    return refused(text.c_str(), Status::not_allowed_by_security);
}

Status Operation::refused(const char* text, Status reason) const {
    tell_if_silent(text);
    return report(name_, QEL_LOG_ANY_s, text, reason);
}

void Operation::tell_if_silent(const char* text) const {
    const DDS_UnsignedLong passing = QELLog_getInstrumentationMask(QEL_LOG_MODULE_DDS);
    if ((passing & QEL_LOG_BIT(QEL_LOG_LEVEL_ERROR)) == 0) {
        tell(text);
    }
}

void Operation::tell(std::string_view text) const {
    // What would not fit into a pipe at once could block this thread and the locks that it holds.
    write_to_standard_error(0, name_, ":", text.substr(0, 2000));
}

void Operation::warn(const char* text) const {
    QELLog_printContextAndMsg(QEL_LOG_MODULE_DDS, DDS_SUBMODULE_MASK_ENTITY, QEL_LOG_LEVEL_WARNING,
                              name_, &QEL_LOG_ANY_s, text);
}

}  // namespace pexa::dds

#include "platform/base/sequence/operation.hpp"

#include <algorithm>
#include <cstdio>
#include <limits>

#include "platform/base/log/log.hpp"

namespace pexa::base {

template <class... Arguments>
void SequenceOperation::report(QELLogLevel level, const QELLogMessageTemplate& message,
                               Arguments... arguments) const {
    if (!is_enabled(QEL_LOG_MODULE_DDS, DDS_SUBMODULE_MASK_DATA, level)) {
        return;
    }
    char context[160];
    std::snprintf(context, sizeof context, "%s_%s", type_->sequenceName, name_);
    base::report(QEL_LOG_MODULE_DDS, DDS_SUBMODULE_MASK_DATA, level, context, &message,
                 arguments...);
}

Status SequenceOperation::bad_parameter(const char* parameter) const {
    report(QEL_LOG_LEVEL_ERROR, DDS_LOG_BAD_PARAMETER_s, parameter);
    return Status::bad_parameter;
}

Status SequenceOperation::violated(const char* condition) const {
    report(QEL_LOG_LEVEL_ERROR, QEL_LOG_ASSERT_FAILURE_s, condition);
    return Status::precondition_not_met;
}

Status SequenceOperation::insufficient_space(DDS_Long available, DDS_Long needed) const {
    report(QEL_LOG_LEVEL_ERROR, QEL_LOG_INSUFFICIENT_SPACE_FAILURE_dd, available, needed);
    return Status::out_of_resources;
}

Status SequenceOperation::not_owner() const {
    report(QEL_LOG_LEVEL_ERROR, DDS_LOG_SEQUENCE_NOT_OWNER);
    return Status::precondition_not_met;
}

Status SequenceOperation::set_failure(const char* what) const {
    report(QEL_LOG_LEVEL_ERROR, DDS_LOG_SET_FAILURE_s, what);
    return Status::error;
}

Status SequenceOperation::get_failure(const char* what) const {
    report(QEL_LOG_LEVEL_ERROR, DDS_LOG_GET_FAILURE_s, what);
    return Status::error;
}

Status SequenceOperation::failure(const char* what) const {
    report(QEL_LOG_LEVEL_ERROR, QEL_LOG_ANY_FAILURE_s, what);
    return Status::error;
}

Status SequenceOperation::no_memory(DDS_Long count) const {
    constexpr size_t most = std::numeric_limits<int>::max();
    const auto elements = static_cast<size_t>(count);
    const size_t bytes = type_->size > most / elements ? most : type_->size * elements;
    report(QEL_LOG_LEVEL_ERROR, QEL_LOG_MALLOC_FAILURE_d, static_cast<int>(bytes));
    return Status::out_of_resources;
}

void SequenceOperation::allocates(DDS_Long old_maximum, DDS_Long new_maximum) const {
    report(QEL_LOG_LEVEL_STATUS_LOCAL, DDS_LOG_MEMORY_ALLOCATED_dd, old_maximum, new_maximum);
}

}  // namespace pexa::base

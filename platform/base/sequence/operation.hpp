#pragma once

#include "pexa/log.h"
#include "pexa/sequence.h"

namespace pexa::base {

/// One operation of one sequence type, as it names itself in its reports.
class SequenceOperation {
public:
    SequenceOperation(const PEXASequenceElement* type, const char* name)
        : type_(type), name_(name) {}

    /// Each reports an error and returns DDS_BOOLEAN_FALSE, for the operation to return.
    DDS_Boolean bad_parameter(const char* parameter) const;
    DDS_Boolean violated(const char* condition) const;
    DDS_Boolean insufficient_space(DDS_Long available, DDS_Long needed) const;
    DDS_Boolean not_owner() const;
    DDS_Boolean set_failure(const char* what) const;
    DDS_Boolean get_failure(const char* what) const;
    DDS_Boolean failure(const char* what) const;
    DDS_Boolean no_memory(DDS_Long count) const;
    /// Notes that the buffer is going to grow.
    void allocates(DDS_Long old_maximum, DDS_Long new_maximum) const;

private:
    template <class... Arguments>
    void report(QELLogLevel level, const QELLogMessageTemplate& message,
                Arguments... arguments) const;

    const PEXASequenceElement* type_;
    const char* name_;
};

}  // namespace pexa::base

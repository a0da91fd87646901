/// @file operation.hpp
/// @brief The reports of an operation on a sequence.
#pragma once

#include "pexa/log.h"
#include "pexa/sequence.h"
#include "platform/internal/status.hpp"

namespace pexa::base {

/// An operation of a sequence type. It knows its name for reports.
class SequenceOperation {
public:
    SequenceOperation(const PEXASequenceElement* type, const char* name)
        : type_(type), name_(name) {}

    /// @name Failures
    /// Each reports an error and returns the result, which the operation is to return.
    /// @{
    Status bad_parameter(const char* parameter) const;
    Status violated(const char* condition) const;
    Status insufficient_space(DDS_Long available, DDS_Long needed) const;
    Status not_owner() const;
    Status set_failure(const char* what) const;
    Status get_failure(const char* what) const;
    Status failure(const char* what) const;
    Status no_memory(DDS_Long count) const;
    /// @}

    /// Reports that the buffer is going to grow.
    void allocates(DDS_Long old_maximum, DDS_Long new_maximum) const;

private:
    template <class... Arguments>
    void report(QELLogLevel level, const QELLogMessageTemplate& message,
                Arguments... arguments) const;

    const PEXASequenceElement* type_;
    const char* name_;
};

}  // namespace pexa::base

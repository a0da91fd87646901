#include "platform/dds/qos/conversion.hpp"

#include <new>

#include "pexa/log.h"

namespace pexa::dds::qos_record {
namespace {

constexpr QELLogMessageTemplate inconsistent_policy_ss{"inconsistent policy %s: %s"};
constexpr QELLogMessageTemplate inconsistent_policies_s{"inconsistent policies: %s"};
constexpr QELLogMessageTemplate immutable_policy_s{"policy cannot change while enabled: %s"};

void* locate(const PolicyRow& row, void* record) {
    return row.locate(record);
}

const void* locate(const PolicyRow& row, const void* record) {
    // Only the address is made; what it points at stays constant.
    return row.locate(const_cast<void*>(record));
}

template <typename... Arguments>
void report(const char* context, const QELLogMessageTemplate& message, Arguments... arguments) {
    QELLog_printContextAndMsg(QEL_LOG_MODULE_DDS, DDS_SUBMODULE_MASK_QOS, QEL_LOG_LEVEL_ERROR,
                              context, &message, arguments...);
}

bool equal_rows(const PolicyRow& row, const void* left, const void* right) {
    return row.change == Change::never ||
           row.operations->equal(locate(row, left), locate(row, right));
}

}  // namespace

void initialize(const PolicyTable& table, void* record) noexcept {
    for (const PolicyRow& row : table.rows) {
        row.operations->initialize(locate(row, record));
    }
    table.adjust_defaults(record);
}

DDS_ReturnCode_t copy(const PolicyTable& table, void* record, const void* from) noexcept {
    for (const PolicyRow& row : table.rows) {
        if (!row.operations->copy(locate(row, record), locate(row, from))) {
            return DDS_RETCODE_OUT_OF_RESOURCES;
        }
    }
    return DDS_RETCODE_OK;
}

void finalize(const PolicyTable& table, void* record) noexcept {
    for (const PolicyRow& row : table.rows) {
        row.operations->finalize(locate(row, record));
    }
}

bool equal(const PolicyTable& table, const void* left, const void* right) noexcept {
    for (const PolicyRow& row : table.rows) {
        if (!equal_rows(row, left, right)) {
            return false;
        }
    }
    return true;
}

DDS_ReturnCode_t check(const PolicyTable& table, const char* context, const void* record) noexcept {
    for (const PolicyRow& row : table.rows) {
        if (const char* fault = row.operations->fault(locate(row, record))) {
            report(context, inconsistent_policy_ss, row.name, fault);
            return DDS_RETCODE_INCONSISTENT_POLICY;
        }
    }
    if (const char* contradiction = table.contradiction(record)) {
        report(context, inconsistent_policies_s, contradiction);
        return DDS_RETCODE_INCONSISTENT_POLICY;
    }
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t check_change(const PolicyTable& table, const char* context, const void* current,
                              const void* wanted) noexcept {
    const DDS_ReturnCode_t result = check(table, context, wanted);
    if (result != DDS_RETCODE_OK) {
        return result;
    }
    for (const PolicyRow& row : table.rows) {
        if (row.change == Change::until_enabled && !equal_rows(row, current, wanted)) {
            report(context, immutable_policy_s, row.name);
            return DDS_RETCODE_IMMUTABLE_POLICY;
        }
    }
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t to_engine(const PolicyTable& table, const void* record,
                           engine::Qos& qos) noexcept {
    try {
        for (const PolicyRow& row : table.rows) {
            row.operations->to_engine(locate(row, record), qos);
        }
    } catch (const std::bad_alloc&) {
        // The engine's QoS is made of standard containers, which have no other way to say so.
        return DDS_RETCODE_OUT_OF_RESOURCES;
    }
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t from_engine(const PolicyTable& table, const engine::Qos& qos,
                             void* record) noexcept {
    for (const PolicyRow& row : table.rows) {
        if (!row.operations->from_engine(qos, locate(row, record))) {
            return DDS_RETCODE_OUT_OF_RESOURCES;
        }
    }
    return DDS_RETCODE_OK;
}

}  // namespace pexa::dds::qos_record

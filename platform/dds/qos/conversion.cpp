#include "platform/dds/qos/conversion.hpp"

#include <new>

#include "pexa/log.h"
#include "platform/dds/interface/operation.hpp"

namespace pexa::dds::qos_record {
namespace {

constexpr QELLogMessageTemplate immutable_policy_s{"policy cannot change while enabled: %s"};

void* locate(const PolicyRow& row, void* record) {
    return row.locate(record);
}

const void* locate(const PolicyRow& row, const void* record) {
    // Only the address is made; the policy behind it stays constant.
    return row.locate(const_cast<void*>(record));
}

void report(const char* context, const QELLogMessageTemplate& message, const char* text) {
    QELLog_printContextAndMsg(QEL_LOG_MODULE_DDS, DDS_SUBMODULE_MASK_QOS, QEL_LOG_LEVEL_ERROR,
                              context, &message, text);
}

bool equal_rows(const PolicyRow& row, const void* left, const void* right) {
    return row.policy->change == Change::never ||
           row.policy->equal(locate(row, left), locate(row, right));
}

}  // namespace

void initialize(const PolicyTable& table, void* record) noexcept {
    for (const PolicyRow& row : table.rows) {
        row.policy->initialize(locate(row, record));
    }
    table.adjust_defaults(record);
}

Status copy(const PolicyTable& table, void* record, const void* from) noexcept {
    for (const PolicyRow& row : table.rows) {
        const Status copied = row.policy->copy(locate(row, record), locate(row, from));
        if (copied != Status::ok) {
            return copied;
        }
    }
    return Status::ok;
}

void finalize(const PolicyTable& table, void* record) noexcept {
    for (const PolicyRow& row : table.rows) {
        row.policy->finalize(locate(row, record));
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

QosFault fault(const PolicyTable& table, const void* record) noexcept {
    for (const PolicyRow& row : table.rows) {
        if (const QosFault found = row.policy->fault(locate(row, record))) {
            QosFault named("policy %s: %s", row.name, found.text.data());
            named.policies = {row.name};
            return named;
        }
    }
    if (const QosFault found = table.contradiction(record)) {
        QosFault named("policies: %s", found.text.data());
        named.policies = found.policies;
        return named;
    }
    return {};
}

Status check(const PolicyTable& table, const char* context, const void* record) noexcept {
    if (const QosFault found = fault(table, record)) {
        const QosFault told("inconsistent %s", found.text.data());
        return Operation(context).refused(told.text.data(), Status::inconsistent_policy);
    }
    return Status::ok;
}

Status check_change(const PolicyTable& table, const char* context, const void* current,
                    const void* wanted) noexcept {
    const Status result = check(table, context, wanted);
    if (result != Status::ok) {
        return result;
    }
    for (const PolicyRow& row : table.rows) {
        if (row.policy->change == Change::until_enabled && !equal_rows(row, current, wanted)) {
            report(context, immutable_policy_s, row.name);
            return Status::immutable_policy;
        }
    }
    return Status::ok;
}

Status to_engine(const PolicyTable& table, const void* record, engine::Qos& qos) noexcept {
    try {
        for (const PolicyRow& row : table.rows) {
            row.policy->to_engine(locate(row, record), qos);
        }
    } catch (const std::bad_alloc&) {
        // The engine's QoS consists of standard containers, which report missing memory only so.
        return Status::out_of_resources;
    }
    return Status::ok;
}

Status from_engine(const PolicyTable& table, const engine::Qos& qos, void* record) noexcept {
    for (const PolicyRow& row : table.rows) {
        const Status stored = row.policy->from_engine(qos, locate(row, record));
        if (stored != Status::ok) {
            return stored;
        }
    }
    return Status::ok;
}

}  // namespace pexa::dds::qos_record

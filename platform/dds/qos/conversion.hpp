/// @file conversion.hpp
/// @brief Operations of the entities on QoS records: keep, check, change, hand to the engine.
///
/// The templates take each of the seven records of pexa/qos.h. They do not throw, and they keep no
/// reference to an argument.
#pragma once

#include "platform/dds/qos/policies.hpp"

namespace pexa::dds {

/// The operations behind the templates below, over any table.
namespace qos_record {
void initialize(const PolicyTable& table, void* record) noexcept;
Status copy(const PolicyTable& table, void* record, const void* from) noexcept;
void finalize(const PolicyTable& table, void* record) noexcept;
bool equal(const PolicyTable& table, const void* left, const void* right) noexcept;
QosFault fault(const PolicyTable& table, const void* record) noexcept;
Status check(const PolicyTable& table, const char* context, const void* record) noexcept;
Status check_change(const PolicyTable& table, const char* context, const void* current,
                    const void* wanted) noexcept;
Status to_engine(const PolicyTable& table, const void* record, engine::Qos& qos) noexcept;
Status from_engine(const PolicyTable& table, const engine::Qos& qos, void* record) noexcept;
}  // namespace qos_record

/// A QoS record that an object owns: the defaults of the DDS standard until something is assigned.
template <typename Record>
class OwnedQos {
public:
    OwnedQos() noexcept { qos_record::initialize(policies_of<Record>(), &record_); }
    OwnedQos(const OwnedQos&) = delete;
    OwnedQos& operator=(const OwnedQos&) = delete;
    ~OwnedQos() { qos_record::finalize(policies_of<Record>(), &record_); }

    /// Deep copy. @return OK, or OUT_OF_RESOURCES with the record unchanged.
    Status assign(const Record& from) noexcept {
        OwnedQos copy;
        const Status result = qos_record::copy(policies_of<Record>(), &copy.record_, &from);
        if (result == Status::ok) {
            const Record old = record_;
            record_ = copy.record_;
            copy.record_ = old;
        }
        return result;
    }

    const Record& get() const noexcept { return record_; }
    Record& get() noexcept { return record_; }

private:
    Record record_;
};

/// @return why no entity can have this QoS, with the policies that are at fault; nothing if one can
template <typename Record>
QosFault fault_of_qos(const Record& wanted) noexcept {
    return qos_record::fault(policies_of<Record>(), &wanted);
}

/// Says whether an entity can have this QoS.
///
/// @param context the operation's name for the report in the middleware's log
/// @return OK or INCONSISTENT_POLICY
template <typename Record>
Status check_qos(const char* context, const Record& wanted) noexcept {
    return qos_record::check(policies_of<Record>(), context, &wanted);
}

/// Says whether an enabled entity can change its QoS from @p current to @p wanted. Policies that
/// the port fills in do not count.
///
/// @return OK, INCONSISTENT_POLICY or IMMUTABLE_POLICY, the failures after a report
template <typename Record>
Status check_qos_change(const char* context, const Record& current, const Record& wanted) noexcept {
    return qos_record::check_change(policies_of<Record>(), context, &current, &wanted);
}

/// @return whether all policies are equal. Policies that the port fills in do not count.
template <typename Record>
bool equal_qos(const Record& left, const Record& right) noexcept {
    return qos_record::equal(policies_of<Record>(), &left, &right);
}

/// Sets the policies of @p record in @p qos and leaves its other policies as they are. Policies
/// that are the port's own business (entity factory, wire protocol) have no counterpart.
///
/// @return OK or OUT_OF_RESOURCES
template <typename Record>
Status to_engine(const Record& record, engine::Qos& qos) noexcept {
    return qos_record::to_engine(policies_of<Record>(), &record, qos);
}

/// Stores the policies of @p qos in the initialised @p record. Policies that @p qos lacks stay as
/// they are.
///
/// @return OK or OUT_OF_RESOURCES, the record then holding the policies converted so far
template <typename Record>
Status from_engine(const engine::Qos& qos, Record& record) noexcept {
    return qos_record::from_engine(policies_of<Record>(), qos, &record);
}

}  // namespace pexa::dds

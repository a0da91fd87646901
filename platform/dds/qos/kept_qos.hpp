/// @file kept_qos.hpp
/// @brief A QoS that several threads use.
#pragma once

#include <mutex>

#include "platform/dds/interface/operation.hpp"
#include "platform/dds/qos/conversion.hpp"

namespace pexa::dds {

/// The QoS of an entity, or a default for others.
template <typename Record>
class KeptQos {
public:
    /// @param out initialised
    Status copy_to(Record& out) const {
        const std::lock_guard guard(mutex_);
        return qos_record::copy(policies_of<Record>(), &out, &qos_.get());
    }

    Status assign(const Record& from) {
        const std::lock_guard guard(mutex_);
        return qos_.assign(from);
    }

    /// Replaces a default. @param wanted NULL for the default of the DDS standard
    Status assign_checked(const Operation& operation, const Record* wanted) {
        const OwnedQos<Record> standard;
        const Record& record = wanted != nullptr ? *wanted : standard.get();
        const Status checked = check_qos(operation.name(), record);
        return checked == Status::ok ? assign(record) : checked;
    }

    /// Runs @p function over the record; it must not call the engine.
    template <typename Function>
    decltype(auto) with_lock(Function&& function) const {
        const std::lock_guard guard(mutex_);
        return function(qos_.get());
    }

private:
    mutable std::mutex mutex_;
    OwnedQos<Record> qos_;
};

}  // namespace pexa::dds

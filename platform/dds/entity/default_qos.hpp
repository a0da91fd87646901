/// @file default_qos.hpp
/// @brief The QoS of entities that are created without a QoS of their own.
#pragma once

#include <atomic>

#include "platform/dds/profiles/profiles.hpp"
#include "platform/dds/qos/kept_qos.hpp"

namespace pexa::dds {

/// The default that was set; else the default profile's; else the DDS standard's.
template <typename Record>
class DefaultQos {
public:
    /// @param profiles outlive this
    explicit DefaultQos(Profiles& profiles) : profiles_(profiles) {}

    /// @param topic_name of the entity, NULL matches no filter of a profile
    /// @param out initialised
    Status copy_to(const Operation& operation, const char* topic_name, Record& out) const {
        return is_set_ ? qos_.copy_to(out) : profiles_.fill_default(operation, topic_name, out);
    }

    /// @param wanted NULL takes an earlier setting back
    Status assign_checked(const Operation& operation, const Record* wanted) {
        if (wanted == nullptr) {
            is_set_ = false;
            return Status::ok;
        }
        const Status assigned = qos_.assign_checked(operation, wanted);
        if (assigned == Status::ok) {
            is_set_ = true;
        }
        return assigned;
    }

private:
    Profiles& profiles_;
    std::atomic<bool> is_set_ = false;
    KeptQos<Record> qos_;
};

}  // namespace pexa::dds

/// @file profiles.hpp
/// @brief The factory's QoS profiles and the files that they come from.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/dds/interface/operation.hpp"
#include "platform/dds/profiles/store.hpp"

namespace pexa::dds {

/// The files that the environment names are read when profiles are first needed. Thread-safe. No
/// lock is held while files are read: reading reports, and a logger device may then ask for
/// profiles.
class Profiles {
public:
    /// @return the profiles as they are now, which later changes leave alone. While this thread
    /// reads the environment's files there are none.
    std::shared_ptr<const ProfileStore> get(const Operation& operation);

    Status load(const Operation& operation, const char* file_name);
    Status reload(const Operation& operation);

    /// Fills in the QoS of a profile for entities of a topic.
    /// @param topic_name may be NULL
    /// @return NO_DATA for an unknown and ERROR for a refused profile, after a report;
    ///   OUT_OF_RESOURCES without memory
    template <typename Record>
    Status fill(const Operation& operation, const ProfileName& name, const char* topic_name,
                Record& qos) {
        return fill_from(*get(operation), operation, name, topic_name, qos);
    }

    /// As fill(), of the default profile. Without one that is the DDS standard's default.
    template <typename Record>
    Status fill_default(const Operation& operation, const char* topic_name, Record& qos) {
        const StorePtr store = get(operation);
        if (const std::optional<ProfileName>& name = store->default_profile()) {
            return fill_from(*store, operation, *name, topic_name, qos);
        }
        const OwnedQos<Record> standard;
        return qos_record::copy(policies_of<Record>(), &qos, &standard.get());
    }

private:
    using StorePtr = std::shared_ptr<const ProfileStore>;

    StorePtr current() const;
    static Result<const QosProfile*> choose(const ProfileStore& store, const Operation& operation,
                                            const ProfileName& name);
    template <typename Record>
    static Status fill_from(const ProfileStore& store, const Operation& operation,
                            const ProfileName& name, const char* topic_name, Record& qos) {
        const Result<const QosProfile*> profile = choose(store, operation, name);
        return profile ? store.fill(*profile.value(), topic_name, qos) : profile.status();
    }
    /// Notes a file that load() has read. The caller holds the lock.
    void remember(const char* file_name);

    mutable std::mutex mutex_;
    /// NULL until the environment's files have been read.
    StorePtr store_;
    /// The files that load() has read. Each stands once, at the place of its last call.
    std::vector<std::string> files_;
};

}  // namespace pexa::dds

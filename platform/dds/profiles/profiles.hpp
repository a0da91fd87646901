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

    /// Fills in the QoS of the default profile for entities of a topic. Without a default profile
    /// that is the DDS standard's default.
    /// @param topic_name may be NULL
    /// @return OUT_OF_RESOURCES without memory
    template <typename Record>
    Status fill_default(const Operation& operation, const char* topic_name, Record& qos) {
        const std::shared_ptr<const ProfileStore> store = get(operation);
        // Never destroyed: threads may make entities until the process has ended.
        static const auto* const empty = new QosProfile;
        const QosProfile* profile =
            store->default_profile() ? store->find(*store->default_profile()) : empty;
        return store->fill(*profile, topic_name, qos);
    }

private:
    using StorePtr = std::shared_ptr<const ProfileStore>;

    StorePtr current() const;
    /// Notes a file that load() has read. The caller holds the lock.
    void remember(const char* file_name);

    mutable std::mutex mutex_;
    /// NULL until the environment's files have been read.
    StorePtr store_;
    /// The files that load() has read. Each stands once, at the place of its last call.
    std::vector<std::string> files_;
};

}  // namespace pexa::dds

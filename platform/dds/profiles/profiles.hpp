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

/// Reads the files that the environment names when profiles are first needed. Thread-safe. No lock
/// is held while files are read, because that reports, and a logger device may ask for profiles.
class Profiles {
public:
    /// @return the profiles as they are now; they do not change any more. None while this thread
    /// reads the environment's files.
    [[nodiscard]] std::shared_ptr<const ProfileStore> get(const Operation& operation);

    [[nodiscard]] DDS_ReturnCode_t load(const Operation& operation, const char* file_name);
    [[nodiscard]] DDS_ReturnCode_t reload(const Operation& operation);

    /// Gives what the default profile says of entities of a topic, the DDS standard's defaults
    /// without one.
    /// @param topic_name may be NULL
    /// @return OUT_OF_RESOURCES without memory
    template <typename Record>
    [[nodiscard]] DDS_ReturnCode_t fill_default(const Operation& operation, const char* topic_name,
                                                Record& qos) {
        const std::shared_ptr<const ProfileStore> store = get(operation);
        static const QosProfile empty;
        const QosProfile* profile =
            store->default_profile() ? store->find(*store->default_profile()) : &empty;
        return store->fill(*profile, topic_name, qos);
    }

private:
    using StorePtr = std::shared_ptr<const ProfileStore>;

    [[nodiscard]] StorePtr current() const;
    /// Notes what load() was called with; the lock is held.
    void remember(const char* file_name);

    mutable std::mutex mutex_;
    /// NULL until the environment's files have been read.
    StorePtr store_;
    /// What load() was called with, each once, in the order of the last calls.
    std::vector<std::string> files_;
};

}  // namespace pexa::dds

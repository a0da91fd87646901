#include "dds/profile_store.hpp"

namespace pexa::dds {

QosProfile& ProfileStore::add(const std::string& library, const std::string& profile) {
    return libraries_[library][profile];
}

const QosProfile* ProfileStore::find(const std::string& library, const std::string& profile) const {
    const auto found_library = libraries_.find(library);
    if (found_library == libraries_.end()) {
        return nullptr;
    }
    const auto found = found_library->second.find(profile);
    return found != found_library->second.end() ? &found->second : nullptr;
}

std::vector<std::string> ProfileStore::libraries() const {
    std::vector<std::string> names;
    for (const auto& [name, profiles] : libraries_) {
        names.push_back(name);
    }
    return names;
}

std::vector<std::string> ProfileStore::profiles(const std::string& library) const {
    std::vector<std::string> names;
    const auto found = libraries_.find(library);
    if (found != libraries_.end()) {
        for (const auto& [name, profile] : found->second) {
            names.push_back(name);
        }
    }
    return names;
}

}  // namespace pexa::dds

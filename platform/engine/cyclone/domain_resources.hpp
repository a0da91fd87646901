/// @file domain_resources.hpp
/// @brief What a domain takes of the process's limits.
///
/// Where Cyclone finds too few descriptors or threads while it starts a domain, it ends the
/// process.
#pragma once

#include <dds/dds.h>

#include <array>
#include <cstddef>

namespace pexa::engine::cyclone {

/// Takes for a moment what Cyclone takes when it starts a domain.
///
/// @return whether all of it was there, or the domain has participants in this process already; if
/// not, a line on the standard error says what was missing
bool has_resources_for(dds_domainid_t domain);

/// As long as an object lives, no socket gets the descriptor of a standard stream that is closed.
/// The application prints to that descriptor, and may open the stream again, which would close the
/// socket.
class StandardDescriptorsHeld {
public:
    StandardDescriptorsHeld();
    StandardDescriptorsHeld(const StandardDescriptorsHeld&) = delete;
    StandardDescriptorsHeld& operator=(const StandardDescriptorsHeld&) = delete;
    ~StandardDescriptorsHeld();

private:
    std::array<int, 3> held_{};
    std::size_t count_ = 0;
};

}  // namespace pexa::engine::cyclone

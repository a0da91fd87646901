/// @file endpoint.hpp
/// @brief The identity of a reader or writer.
#pragma once

#include <array>
#include <compare>
#include <cstdint>

#include "tools/records/application.hpp"

namespace orvane::tools {

/// A GUID (DDSI-RTPS 2.5, 8.2.4) as four words, most significant bytes first.
struct Endpoint {
    std::array<std::uint32_t, 4> guid{};

    // The check takes the zero that a defaulted comparison is compared with for a pointer.
    // NOLINTNEXTLINE(modernize-use-nullptr)
    friend auto operator<=>(const Endpoint&, const Endpoint&) = default;
};

/// The application that an endpoint belongs to.
inline Application application_of(const Endpoint& endpoint) {
    return {endpoint.guid[0], endpoint.guid[1], endpoint.guid[2]};
}

}  // namespace orvane::tools

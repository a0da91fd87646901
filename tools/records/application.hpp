/// @file application.hpp
/// @brief The identity of an application on its domain.
#pragma once

#include <compare>
#include <cstdint>

namespace orvane::tools {

/// Identifies a logging application on its domain.
struct Application {
    std::uint32_t host_id = 0;
    std::uint32_t app_id = 0;

    // The check takes the zero that a defaulted comparison is compared with for a pointer.
    // NOLINTNEXTLINE(modernize-use-nullptr)
    friend auto operator<=>(const Application&, const Application&) = default;
};

}  // namespace orvane::tools

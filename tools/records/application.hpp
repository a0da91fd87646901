/// @file application.hpp
/// @brief The identity of an application on its domain.
#pragma once

#include <compare>
#include <cstdint>

namespace orvane::tools {

/// Identifies a logging application on its domain: the prefix of its GUIDs (DDSI-RTPS 2.5, 8.2.4).
///
/// Samples name an application by HOST:APP only, and several applications may share that: those
/// with one certificate of DDS Security differ in the last 16 bits of it.
struct Application {
    std::uint32_t host_id = 0;
    std::uint32_t app_id = 0;
    /// Tells those apart that share HOST:APP. 0 is not known: somebody else has sent the sample.
    std::uint32_t instance_id = 0;

    // The check takes the zero that a defaulted comparison is compared with for a pointer.
    // NOLINTNEXTLINE(modernize-use-nullptr)
    friend auto operator<=>(const Application&, const Application&) = default;
};

inline bool share_host_and_app(const Application& a, const Application& b) {
    return a.host_id == b.host_id && a.app_id == b.app_id;
}

}  // namespace orvane::tools

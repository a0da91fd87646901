/// @file refusal.hpp
/// @brief What the engine's reports under DDS Security mean, in words.
#pragma once

#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace orvane::tools {

/// Another participant is refused.
struct Refusal {
    std::string cause;
    std::string remedy;

    // The check takes the zero that a defaulted comparison is compared with for a pointer.
    // NOLINTNEXTLINE(modernize-use-nullptr)
    friend auto operator<=>(const Refusal&, const Refusal&) = default;
};

/// @param report a line of the engine's log
/// @return nothing for a report that says nothing of a refusal
std::optional<Refusal> refusal_of(std::string_view report);

}  // namespace orvane::tools

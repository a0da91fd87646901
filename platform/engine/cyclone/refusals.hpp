/// @file refusals.hpp
/// @brief Which of Cyclone's warnings say that another participant is refused, and how often.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <mutex>
#include <new>
#include <string>
#include <string_view>
#include <vector>

namespace pexa::engine::cyclone {

/// Cyclone only warns when it refuses another participant. For whoever runs a plant that is an
/// error: an application is not heard, or somebody tries to get in.
inline bool is_refusal(std::string_view text) {
    constexpr std::string_view parts[] = {
        "Begin handshake request failed",
        "Begin handshake reply failed",
        "Process handshake failed",
        "security_attributes mismatch",
        "Access control does not allow remote",
        "Validate remote identity failed",
        "peer_credential_token",
    };
    return std::ranges::any_of(
        parts, [&](std::string_view part) { return text.find(part) != std::string_view::npos; });
}

/// Cyclone repeats a refusal with each announcement of the other participant, who decides how often
/// that is. Here each refusal passes once in a while, and only so many different ones.
class RefusalLimit {
public:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::minutes period{1};
    static constexpr std::size_t most = 10;

    bool passes(std::string_view text, Clock::time_point now) noexcept {
        const std::lock_guard lock(mutex_);
        std::erase_if(passed_, [&](const Passed& each) { return now - each.time >= period; });
        const bool is_known =
            std::ranges::any_of(passed_, [&](const Passed& each) { return each.text == text; });
        if (is_known || passed_.size() >= most) {
            return false;
        }
        try {
            passed_.push_back({std::string(text), now});
        } catch (const std::bad_alloc&) {
            return false;
        }
        return true;
    }

private:
    struct Passed {
        std::string text;
        Clock::time_point time;
    };

    std::mutex mutex_;
    std::vector<Passed> passed_;
};

}  // namespace pexa::engine::cyclone

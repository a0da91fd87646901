/// @file outcome.hpp
/// @brief How a step ended.
#pragma once

#include <cstddef>

#include "orvane/core.h"

namespace orvane::core {

/// Either done, or failed with the text that reports it.
class [[nodiscard]] Outcome {
public:
    static constexpr Outcome done() noexcept { return Outcome(nullptr, QEL_KX_LEVEL_ERROR); }
    static constexpr Outcome failed(const char* reason,
                                    DDS_Long level = QEL_KX_LEVEL_ERROR) noexcept {
        return Outcome(reason, level);
    }
    static constexpr Outcome done_if(bool is_done, const char* reason_otherwise) noexcept {
        return is_done ? done() : failed(reason_otherwise);
    }

    constexpr bool has_failed() const noexcept { return reason_ != nullptr; }
    /// NULL unless it has failed.
    constexpr const char* reason() const noexcept { return reason_; }
    /// Of the report.
    constexpr DDS_Long level() const noexcept { return level_; }

private:
    constexpr Outcome(const char* reason, DDS_Long level) noexcept
        : reason_(reason), level_(level) {}

    const char* reason_;
    DDS_Long level_;
};

/// Takes steps in their order, up to the first that fails.
template <std::size_t Count, typename... Arguments>
Outcome take_steps(Outcome (*const (&steps)[Count])(Arguments&...), Arguments&... arguments) {
    for (const auto step : steps) {
        if (const Outcome outcome = step(arguments...); outcome.has_failed()) {
            return outcome;
        }
    }
    return Outcome::done();
}

}  // namespace orvane::core

/// @file logger_change.hpp
/// @brief The appearance, the change or the end of a logger.
#pragma once

#include <optional>

#include "tools/records/logger_state.hpp"

namespace orvane::tools {

struct LoggerChange {
    enum class Kind {
        appeared,
        present,  ///< it had appeared before, and another file of a recording begins
        changed,
        gone,
    };
    Kind kind = Kind::appeared;
    LoggerState before;  ///< the same as @ref now, but for @ref Kind::changed
    LoggerState now;     ///< the last one known
    /// Who has published it in the name of the logger. Nothing: the logger itself.
    std::optional<Application> publisher{};
};

}  // namespace orvane::tools

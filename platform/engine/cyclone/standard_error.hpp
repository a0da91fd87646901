/// @file standard_error.hpp
/// @brief Lines that neither a device nor a verbosity may hide.
#pragma once

#include <poll.h>
#include <sys/uio.h>
#include <unistd.h>

#include <iterator>
#include <string_view>
#include <tuple>

#include "platform/internal/signals.hpp"

namespace pexa::engine::cyclone {

/// Writes a line on standard error, unless that blocks.
inline void write_to_standard_error(std::string_view line) {
    const PipeSignalHeld signal;
    constexpr int patience_ms = 1000;
    pollfd ready = {STDERR_FILENO, POLLOUT, 0};
    if (poll(&ready, 1, patience_ms) <= 0) {
        return;
    }
    char end = '\n';
    const iovec parts[] = {{const_cast<char*>(line.data()), line.size()}, {&end, 1}};
    // There is no other place to report a failure.
    std::ignore = writev(STDERR_FILENO, parts, std::size(parts));
}

}  // namespace pexa::engine::cyclone

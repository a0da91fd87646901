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

namespace pexa {

/// Writes a line that consists of these texts on standard error, unless that blocks. A pipe that
/// has room takes 4096 bytes at once.
/// @param patience_ms how long to wait for room
template <typename... Texts>
void write_to_standard_error(int patience_ms, const Texts&... texts) {
    const PipeSignalHeld signal;
    pollfd ready = {STDERR_FILENO, POLLOUT, 0};
    if (poll(&ready, 1, patience_ms) <= 0) {
        return;
    }
    char end = '\n';
    const auto part = [](std::string_view text) {
        return iovec{const_cast<char*>(text.data()), text.size()};
    };
    const iovec parts[] = {part(texts)..., {&end, 1}};
    // There is no other place to report a failure.
    std::ignore = writev(STDERR_FILENO, parts, std::size(parts));
}

}  // namespace pexa

#include <poll.h>
#include <pthread.h>
#include <stdio_ext.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <string_view>

#include "pexa/osapi.h"
#include "platform/base/os/call_marks.hpp"
#include "platform/base/os/deadline.hpp"
#include "platform/internal/cancellation.hpp"
#include "platform/internal/signals.hpp"

namespace pexa::base {
namespace {

// A pipe that has room takes so much at once. Terminals and sockets are no worse in practice.
constexpr std::size_t most_at_once = PIPE_BUF;

constinit std::atomic<unsigned> lost_lines = 0;

/// What the thread has printed. A signal handler may print while the thread notes a line; then the
/// lines may overwrite each other, but nothing else.
struct KeptLines {
    std::array<char, 511> text;
    std::size_t length;

    void add(std::string_view line) {
        const std::size_t begin = length;
        const std::size_t added = std::min(line.size(), text.size() - begin);
        length = begin + added;
        std::copy_n(line.data(), added, text.data() + begin);
    }

    std::size_t take(char* buffer, std::size_t size) {
        const std::size_t taken = size == 0 ? 0 : std::min(length, size - 1);
        if (buffer != nullptr && size > 0) {
            std::copy_n(text.data(), taken, buffer);
            buffer[taken] = '\0';
        }
        length = 0;
        return buffer == nullptr ? 0 : taken;
    }
};

constinit thread_local KeptLines kept_lines = {};

// The last thread that must not wait gave up the lock of standard output.
constinit std::atomic<bool> output_seems_stuck = false;

bool may_wait() {
    return device_call_depth == 0 && engine_call_depth == 0;
}

/// Around a write. What stays in the buffer of standard output needs neither: it makes no system
/// call.
struct Write {
    const NoCancellation whole_write;
    const PipeSignalHeld signal;
};

/// The lock of standard output.
class OutputLock {
public:
    explicit OutputLock(bool waits) : is_held_(waits || take_soon()) {
        if (waits) {
            flockfile(stdout);
        }
    }
    OutputLock(const OutputLock&) = delete;
    OutputLock& operator=(const OutputLock&) = delete;
    ~OutputLock() {
        if (is_held_) {
            funlockfile(stdout);
        }
    }

    bool is_held() const { return is_held_; }

private:
    /// Other threads hold the lock for microseconds, unless standard output blocks. Only the first
    /// thread that meets a blocked one tries for about half a millisecond.
    static bool take_soon() {
        constexpr int attempts = 10;
        constexpr uint32_t pause_ns = 50'000;
        for (int attempt = 1; ftrylockfile(stdout) != 0; ++attempt) {
            if (attempt == attempts || output_seems_stuck.load(std::memory_order_relaxed)) {
                output_seems_stuck.store(true, std::memory_order_relaxed);
                return false;
            }
            sleep_until(deadline_after(0, pause_ns));
        }
        output_seems_stuck.store(false, std::memory_order_relaxed);
        return true;
    }

    bool is_held_;
};

// The following need the lock.

/// @return whether so many bytes only go to the buffer of standard output.
bool fits_into_buffer(std::size_t bytes) {
    return __flbf(stdout) == 0 && __fpending(stdout) + bytes < __fbufsize(stdout);
}

/// @return whether standard output takes so many bytes without waiting. Another process that writes
/// to the same pipe at this moment can still take the room.
bool takes_at_once(std::size_t bytes) {
    const int descriptor = fileno(stdout);
    struct stat file {};
    if (descriptor < 0 || (fstat(descriptor, &file) == 0 && S_ISREG(file.st_mode))) {
        return true;
    }
    // A pipe without a reader is ready, too: a write to it fails at once.
    pollfd ready = {descriptor, POLLOUT, 0};
    return bytes <= most_at_once && poll(&ready, 1, 0) > 0;
}

void flush() {
    const Write write;
    fflush_unlocked(stdout);
}

/// Empties the buffer as far as that does not wait. @return whether there is room for @p bytes
bool make_room(std::size_t bytes) {
    if (fits_into_buffer(bytes)) {
        return true;
    }
    if (const std::size_t pending = __fpending(stdout); pending > 0) {
        if (!takes_at_once(pending)) {
            return false;
        }
        flush();
    }
    return fits_into_buffer(bytes) || takes_at_once(bytes);
}

void put(std::string_view text) {
    if (fits_into_buffer(text.size())) {
        fwrite_unlocked(text.data(), 1, text.size(), stdout);
        return;
    }
    const Write write;
    fwrite_unlocked(text.data(), 1, text.size(), stdout);
}

[[gnu::format(printf, 1, 0)]] void put_formatted(const char* format, va_list arguments) {
    const Write write;
    std::vprintf(format, arguments);
}

[[gnu::format(printf, 1, 0)]] void print_line(const char* format, va_list arguments) {
    const unsigned lost = lost_lines.load(std::memory_order_relaxed) == 0
                              ? 0
                              : lost_lines.exchange(0, std::memory_order_relaxed);
    std::array<char, most_at_once> text;
    std::size_t length = 0;
    if (lost > 0) {
        length = static_cast<std::size_t>(
            std::snprintf(text.data(), text.size(),
                          "(%u lines are missing: standard output was blocked)\n", lost));
    }
    const std::string_view note(text.data(), length);
    va_list again;
    va_copy(again, arguments);
    const int wanted = std::vsnprintf(text.data() + length, text.size() - length, format, again);
    va_end(again);
    length += wanted < 0 ? 0 : static_cast<std::size_t>(wanted);
    const bool is_too_long = length >= text.size();
    kept_lines.add(
        std::string_view(text.data(), std::min(length, text.size() - 1)).substr(note.size()));

    if (may_wait()) {
        const OutputLock lock(true);
        put(is_too_long ? note : std::string_view(text.data(), length));
        if (is_too_long) {
            put_formatted(format, arguments);
        }
        return;
    }
    if (is_too_long) {
        length = text.size();
        text.back() = '\n';
    }
    const NoCancellation whole_line;
    const OutputLock lock(false);
    if (lock.is_held() && make_room(length)) {
        put({text.data(), length});
    } else {
        lost_lines.fetch_add(lost + 1, std::memory_order_relaxed);
    }
}

void flush_lines() {
    const NoCancellation whole_flush;
    const OutputLock lock(may_wait());
    if (lock.is_held() && (may_wait() || takes_at_once(__fpending(stdout)))) {
        flush();
    }
}

}  // namespace
}  // namespace pexa::base

// A call with variable arguments cannot be forwarded in one line.
void QELOsapi_printLine(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    pexa::base::print_line(format, arguments);
    va_end(arguments);
}

DDS_UnsignedLong QELOsapi_takeLines(char* buffer, DDS_UnsignedLong size) {
    return static_cast<DDS_UnsignedLong>(pexa::base::kept_lines.take(buffer, size));
}

void QELOsapi_flushLines(void) {
    pexa::base::flush_lines();
}

void QELOsapi_enterEngineCall(void) {
    ++pexa::base::engine_call_depth;
}

void QELOsapi_leaveEngineCall(void) {
    --pexa::base::engine_call_depth;
}

#pragma once

#include "orvane/core.h"

namespace orvane::test {

/// Functions of the platform and of other parts of the library that a test can let fail.
enum class Function {
    AllocateStructure,
    AllocateString,
    DuplicateString,
    CopyThreadSettings,
    NewPool,
    GetBuffer,
    NewSemaphore,
    TakeSemaphore,
    GiveSemaphore,
    NewClock,
    ReadClock,
    NewThread,
    ThreadId,
    GlobalLock,
    GlobalLockUnless,
    GlobalUnlock,
    LoggerInstance,
    SetOutputDevice,
    SetReaderListener,
    CreateState,
    CreateEntities,
    WriteState,
    LevelName,
    Count
};

/// For as long as it lives, lets one call of a function fail, or that call and all after it.
class Fault {
public:
    enum class Duration { Once, FromThenOn };

    /// @param call number of the call that fails, counted from now.
    explicit Fault(Function function, int call = 1, Duration duration = Duration::Once);
    ~Fault();
    Fault(const Fault&) = delete;
    Fault& operator=(const Fault&) = delete;

    /// Whether the call has come.
    [[nodiscard]] bool has_struck() const;

private:
    Function function_;
};

/// Structures and strings of the middleware's heap that exist.
[[nodiscard]] long live_allocations();

/// Buffers that pools have lent.
[[nodiscard]] long lent_buffers();

/// Calls that removed or installed the middleware logger's device.
[[nodiscard]] int output_device_calls();

/// Whether the instance still had its write thread when the last listener was removed from a
/// reader.
[[nodiscard]] bool had_write_thread_at_listener_removal();

/// For as long as it lives, clocks show this time.
class FixedTime {
public:
    explicit FixedTime(QELNtpTime now);
    ~FixedTime();
    FixedTime(const FixedTime&) = delete;
    FixedTime& operator=(const FixedTime&) = delete;
};

}  // namespace orvane::test

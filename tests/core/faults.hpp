#pragma once

#include "orvane/core.h"

namespace orvane::test {

/// For as long as it lives, lets one call of a function of the platform, or of another part of the
/// library, fail. The functions are those of the list of wrapped ones in CMakeLists.txt.
class Fault {
public:
    /// @param call number of the call that fails, counted from now.
    explicit Fault(const char* function, int call = 1);
    ~Fault();
    Fault(const Fault&) = delete;
    Fault& operator=(const Fault&) = delete;

    /// Whether the call has come.
    [[nodiscard]] bool has_struck() const;

    struct Plan;

private:
    Plan* plan_;
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

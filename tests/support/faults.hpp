// Functions whose calls a test counts, lets fail, or replaces.
//
// The functions are the rows of faults.cpp. A program that links orvane_test_support has all calls
// from our object files to them led here. The bookkeeping uses relaxed atomics only: it must not
// order threads that the code under test leaves unordered, or the thread sanitizer would miss what
// it is to find.
#pragma once

#include <atomic>
#include <functional>
#include <optional>
#include <string_view>
#include <utility>

#include <gtest/gtest.h>

#include "pexa/base.h"

namespace orvane::test {

/// Names of groups of functions that count their calls together.
inline constexpr const char* heap_allocation = "heap";  ///< QELOsapiHeap_allocate…
inline constexpr const char* new_expression = "new";    ///< operator new

/// One function or group. Made by the rows of faults.cpp.
struct Wrapped {
    explicit Wrapped(std::string_view wrapped_name, Wrapped* group_of_it = nullptr);
    static Wrapped& named(std::string_view name);

    /// Counts a call here and in the group. @return what fails it, or NULL.
    const Wrapped* strike();

    const std::string_view name;
    Wrapped* const group;
    Wrapped* const next;
    std::atomic<int> calls = 0;
    std::atomic<bool> armed = false;
    std::atomic<int> failing_call = 0;
    std::atomic<bool> fails_after = false;
    std::atomic<DDS_ReturnCode_t> code = DDS_RETCODE_ERROR;
    std::atomic<bool> struck = false;
    std::atomic<const std::function<void()>*> action = nullptr;
    /// The signature of the function is known where these two are used.
    std::atomic<const void*> replacement = nullptr;
    void (*real)() = nullptr;
};

/// Which calls fail, and how.
struct FaultPlan {
    int call = 1;        ///< number of the call that fails, counted from now; 0: all calls
    bool after = false;  ///< the call does its work, and only its result says that it failed
    DDS_ReturnCode_t code = DDS_RETCODE_ERROR;  ///< of a function that returns such a code
};

/// Lets calls of a function or group fail for as long as it lives, one object per function at a
/// time. A failing call returns the code, the failure of its row, or else zero; operator new throws
/// std::bad_alloc, and only on the thread that made the object.
class Fault {
public:
    explicit Fault(std::string_view function, FaultPlan plan = {});
    Fault(std::string_view function, int call) : Fault(function, FaultPlan{.call = call}) {}
    ~Fault();

    /// @return whether a call has failed.
    bool has_struck() const { return wrapped_.struck.load(std::memory_order_relaxed); }

private:
    Wrapped& wrapped_;
};

/// Runs an action before each call of a function for as long as it lives, on the calling thread.
class Before {
public:
    Before(std::string_view function, std::function<void()> action)
        : wrapped_(Wrapped::named(function)), action_(std::move(action)) {
        wrapped_.action.store(&action_, std::memory_order_release);
    }
    ~Before() { wrapped_.action.store(nullptr, std::memory_order_release); }

private:
    Wrapped& wrapped_;
    std::function<void()> action_;
};

/// Counts the calls of a function or group from its construction on.
class Calls {
public:
    explicit Calls(std::string_view function) : wrapped_(Wrapped::named(function)) {}
    int count() const { return wrapped_.calls.load(std::memory_order_relaxed) - before_; }

private:
    Wrapped& wrapped_;
    int before_ = wrapped_.calls.load(std::memory_order_relaxed);
};

/// @return blocks of the platform's heap that are allocated and not yet freed.
long live_blocks();

template <typename Signature>
class Stub;

/// Does the work of a function for as long as it lives: `Stub<decltype(f)> stub("f", callable)`.
/// The callable may call Stub::real(). It must be made before the threads that call the function.
template <typename Result, typename... Arguments>
class Stub<Result(Arguments...)> {
public:
    Stub(std::string_view function, std::function<Result(Arguments...)> replacement)
        : wrapped_(Wrapped::named(function)), replacement_(std::move(replacement)) {
        wrapped_.replacement.store(&replacement_, std::memory_order_relaxed);
    }
    ~Stub() { wrapped_.replacement.store(nullptr, std::memory_order_relaxed); }

    Result real(Arguments... arguments) const {
        return reinterpret_cast<Result (*)(Arguments...)>(wrapped_.real)(arguments...);
    }

private:
    Wrapped& wrapped_;
    std::function<Result(Arguments...)> replacement_;
};

/// Lets the 1st, 2nd, 3rd … allocation of @p attempt fail until it succeeds. The attempt returns
/// whether it succeeded. Nothing may stay allocated behind it, so it undoes what it made.
/// @param allocation heap_allocation or new_expression
template <typename Attempt>
void sweep(const char* allocation, Attempt attempt) {
    constexpr int cap = 1000;
    for (int call = 1; call <= cap; ++call) {
        const long before = live_blocks();
        std::optional<Fault> fault(std::in_place, allocation, call);
        const bool succeeded = attempt();
        const bool struck = fault->has_struck();
        fault.reset();
        ASSERT_EQ(live_blocks(), before) << allocation << " number " << call << " failed";
        ASSERT_NE(succeeded, struck) << allocation << " number " << call << " failed";
        if (succeeded) {
            ASSERT_GT(call, 1) << "nothing was allocated";
            return;
        }
    }
    FAIL() << "still failing at the cap";
}

}  // namespace orvane::test

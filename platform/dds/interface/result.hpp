/// @file result.hpp
/// @brief A value, or the reason why there is none.
#pragma once

#include <utility>

#include "platform/internal/status.hpp"

namespace pexa::dds {

/// The result of an operation that makes or finds a value and can fail.
template <typename T>
class [[nodiscard]] Result {
public:
    // NOLINTBEGIN(google-explicit-constructor): a function returns either
    Result(T value) : value_(std::move(value)) {}
    /// @param failure not OK
    Result(Status failure) : status_(failure) {}
    // NOLINTEND(google-explicit-constructor)

    explicit operator bool() const { return status_ == Status::ok; }
    Status status() const { return status_; }
    /// @return T{} after a failure.
    const T& value() const { return value_; }

private:
    Status status_ = Status::ok;
    T value_{};
};

}  // namespace pexa::dds

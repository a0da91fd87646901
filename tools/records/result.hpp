/// @file result.hpp
/// @brief How an operation ends that can fail. Who calls it prints the message.
#pragma once

#include <optional>

namespace orvane::tools {

enum class [[nodiscard]] Status{ok, failed};

/// A value, or nothing when the operation failed.
template <typename Value>
class [[nodiscard]] Result : public std::optional<Value> {
public:
    using std::optional<Value>::optional;
};

}  // namespace orvane::tools

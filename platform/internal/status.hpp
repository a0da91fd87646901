/// @file status.hpp
/// @brief How an operation ended.
#pragma once

namespace pexa {

/// The result of an operation that can fail. The numbers are the return codes of the DDS standard
/// and of the DDS Security standard.
/// A caller that ignores a result has to say so.
enum class [[nodiscard]] Status : int{
    ok = 0,
    error = 1,
    unsupported = 2,
    bad_parameter = 3,
    precondition_not_met = 4,
    out_of_resources = 5,
    not_enabled = 6,
    immutable_policy = 7,
    inconsistent_policy = 8,
    already_deleted = 9,
    timeout = 10,
    no_data = 11,
    illegal_operation = 12,
    not_allowed_by_security = 1000,
};

}  // namespace pexa

/// @file faults.hpp
/// @brief Platform calls that are replaced at link time, so that a test can count them, let them
/// fail, or do something just before one.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "pexa/base.h"

namespace faults {

struct Fault {
    std::string function;
    /// Which call of it since the last reset() fails, counted from 1; 0: all.
    int call = 1;
    /// The call does its work and only its result says that it failed.
    bool after = false;
    /// Result of a function that returns a code; others return NULL, 0 or NIL.
    DDS_ReturnCode_t code = DDS_RETCODE_ERROR;
};

/// Forgets everything below.
void reset();
void add(Fault fault);
/// Runs @p action before each call of @p function, on the calling thread.
void before(const std::string& function, std::function<void()> action);
/// The calls that were counted since the last reset().
[[nodiscard]] int calls(const std::string& function);
[[nodiscard]] std::vector<std::string> sequence();

/// Host and application id that every participant seems to have.
inline std::optional<std::pair<DDS_UnsignedLong, DDS_UnsignedLong>> identity;
/// Name of a profile that seems to exist in every library, with policies unlike the defaults.
inline const char* profile = nullptr;

/// Notes a call. @return the fault that hits it.
[[nodiscard]] std::optional<Fault> strike(const char* function);

}  // namespace faults

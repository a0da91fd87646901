/// @file arguments.hpp
/// @brief Options that several commands share.
#pragma once

#include <CLI/App.hpp>
#include <chrono>
#include <cstdint>

namespace orvane::tools {

void add_domain_option(CLI::App& command, std::int32_t& domain_id);

/// @param seconds its present value stands in the help
void add_timeout_option(CLI::App& command, double& seconds, const std::string& description);

/// Accepts seconds, 0 or more.
CLI::Validator seconds_validator();

/// Seconds as a wait, of at most a year.
std::chrono::milliseconds wait_of(double seconds);

/// A wait that only news or a signal should end.
inline constexpr std::chrono::milliseconds longest_wait{60'000};

}  // namespace orvane::tools

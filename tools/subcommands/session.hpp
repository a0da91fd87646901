/// @file session.hpp
/// @brief The start and the end of a subcommand that looks at the loggers of a domain.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tools/domain/view.hpp"
#include "tools/records/domain_options.hpp"
#include "tools/records/result.hpp"
#include "tools/subcommands/domain_access.hpp"

namespace orvane::tools {

/// Checks the access to the domain, joins it and runs @p action, which SIGINT and SIGTERM
/// interrupt.
/// @return the exit status of @p action, or failure when the domain could not be joined
int with_domain(const DomainOptions& domain, DomainUse use,
                const std::function<int(DomainView& view)>& action);

/// Prints a line for each text on the standard error.
void print_warnings(const std::vector<std::string>& texts);

/// Prints on the standard error that a reader or the writer failed. @return the exit status
int print_lost_domain();

/// Writes to the standard output, at once. Prints on the standard error why it failed.
Status write_out(const std::string& text);

/// Prints on the standard error that writing failed with this error number.
void print_write_failure(int error);

/// Seconds as a wait, of at most a year.
std::chrono::milliseconds wait_of(double seconds);

/// A wait that only news or a signal should end.
inline constexpr std::chrono::milliseconds longest_wait{60'000};

}  // namespace orvane::tools

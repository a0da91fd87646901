/// @file domain_session.hpp
/// @brief The frame of a command that looks at the loggers of a domain.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "tools/domain/view.hpp"

namespace orvane::tools {

/// Joins the domain and runs @p action, which SIGINT and SIGTERM interrupt.
/// @return the exit status of @p action, or failure when the domain could not be joined
int with_domain(std::int32_t domain_id, const std::function<int(DomainView& view)>& action);

/// Says on standard error that reading from the domain has failed. @return the exit status
int report_lost_domain();

/// Writes to the standard output, at once. @return false, after a report, when that failed
[[nodiscard]] bool write_out(const std::string& text);

}  // namespace orvane::tools

/// @file report.hpp
/// @brief The report of a series of runs.
#pragma once

#include <string>

#include "bench/report/run.hpp"

namespace orvane::bench::report {

/// @return Markdown: for each machine its runs, the targets, and the tables of all sections
std::string report(const Series& series);

}  // namespace orvane::bench::report

/// @file sections.hpp
/// @brief The parts of the report. Each gives a table and judges the targets that it has figures
/// for.
#pragma once

#include <string>
#include <vector>

#include "bench/report/results.hpp"
#include "bench/report/table.hpp"

namespace orvane::bench::report {

/// A heading, tables, and what they were judged by.
struct Section {
    std::string text;
    std::vector<Target> targets;
};

Section call_section(const Results& results);
/// Calls with cold caches or beside a busy neighbour.
Section disturbed_section(const Results& results);
Section front_ends_section(const Results& results);
Section stream_section(const Results& results);
Section types_section(const Results& results);
Section rest_section(const Results& results);
Section flood_section(const Results& results);
Section viewers_section(const Results& results);
Section security_section(const Results& results);

/// Data of a plot: a line per group of bars, with a name and then value and upper end per bar.
struct PlotData {
    std::string file;
    std::string text;
};
/// Only of what has been measured.
std::vector<PlotData> plots(const Results& results);

}  // namespace orvane::bench::report

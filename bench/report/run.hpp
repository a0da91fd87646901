/// @file run.hpp
/// @brief A run of the benchmarks, as it is kept in a file, and the runs that belong together.
#pragma once

#include <cstddef>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace orvane::bench::report {

/// What a run has measured, of which sources, when and where.
struct Run {
    std::string begun;    ///< in UTC, as 2026-11-23T00:10:05Z
    std::string kind;     ///< "complete", "cold", or what else was asked for
    std::string commit;   ///< of the tree that was measured
    std::string sources;  ///< names the content of what was measured; equal for equal sources
    std::string load;     ///< load average before the run
    std::string machine;  ///< processor, their number, system, compiler
    /// What a row is about are its members but "figures", which are medians over the repetitions.
    nlohmann::json rows;
};

/// Reads what the programs have written, a row of JSON on each line. Rows about the same are
/// repetitions, and become one row.
nlohmann::json merge_repetitions(const std::filesystem::path& results);

std::string to_text(const Run& run);

/// Adds a run to a folder of runs, as a file whose name is when it began and its commit.
void add_run(const std::filesystem::path& folder, const Run& run);

/// The runs that have measured the sources of the newest run, from old to new.
struct Series {
    std::vector<Run> runs;
    std::size_t others = 0;  ///< runs of other sources in the same folder
};

/// @throw std::runtime_error for a file that is no run
Series newest_series(const std::filesystem::path& folder);

/// The runs of each machine, from old to new; the machine of the newest run comes first. Figures of
/// different machines do not compare.
std::vector<std::vector<Run>> by_machine(const std::vector<Run>& runs);

}  // namespace orvane::bench::report

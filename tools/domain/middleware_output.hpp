/// @file middleware_output.hpp
/// @brief Where the middleware's reports go: to the standard error, because the standard output is
/// for the lines that the user asked for.
#pragma once

namespace orvane::tools {

/// Prints the middleware's reports from now on. Why somebody is refused under DDS Security is said
/// once, in words.
void print_middleware_reports();

/// Prints nothing more of them: the participant is of no use any more, and the engine stumbles over
/// its end.
void silence_middleware();

/// Whether somebody has been refused since.
bool has_refused_somebody();

}  // namespace orvane::tools

#pragma once

/// operator new as our own code sees it: fails on demand, for the calling thread. What the standard
/// library compiled into its shared object allocates (long strings) is not seen.
namespace failing_new {

/// Fails the allocation of that number from now on (1 is the next one), and no other.
void fail_allocation(int number);
/// @return whether the failure that was asked for has not happened yet, and calls it off.
bool was_out_of_reach();

}  // namespace failing_new

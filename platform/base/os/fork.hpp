/// @file fork.hpp
/// @brief What this room does first in a child process that fork() makes. The child has one thread,
/// the one that forked, and a copy of the memory as it was.
#pragma once

namespace pexa::base {

/// The thread has another id in the child.
void forget_thread_id();
/// A thread that does not exist in the child may hold the lock.
void free_global_lock();

}  // namespace pexa::base

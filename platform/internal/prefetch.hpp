/// @file prefetch.hpp
/// @brief Fetches memory before it is needed.
#pragma once

namespace pexa {

/// Begins to make a cache line this processor's own, because it will soon write there. Does nothing
/// where no memory is.
inline void prefetch_for_writing(const void* address) noexcept {
#if defined(__x86_64__)
    // The compiler's own would fetch the line for reading: not every processor has this
    // instruction. Those that have not take it for one that does nothing.
    asm volatile("prefetchw (%0)" : : "r"(address));
#else
    __builtin_prefetch(address, 1);
#endif
}

}  // namespace pexa

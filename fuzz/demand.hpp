#pragma once

#include <cstdlib>

/// Ends the fuzzer where a condition does not hold.
inline void demand(bool condition) {
    if (!condition) {
        std::abort();
    }
}

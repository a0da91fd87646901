#pragma once

#include <string>
#include <vector>

#include "pexa/log.h"

/// Catches what the middleware's log writes while it exists; all levels of all modules pass.
class Reports {
public:
    Reports();
    ~Reports();
    Reports(const Reports&) = delete;
    Reports& operator=(const Reports&) = delete;

    /// The texts since the last call.
    std::vector<std::string> take();

private:
    static void add(void* self, QELLogModule module, QELLogLevel level, const char* text);

    std::vector<std::string> texts_;
};

/// @file call_setting.hpp
/// @brief A setting of the call benchmark, by which its figures are found and named.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace orvane::bench::report {

constexpr int ordinary_length = 60;

struct CallSetting {
    int gap_us = 0;
    int threads = 1;
    bool reader = false;
    int length = ordinary_length;
    std::string group = "call";  ///< or a disturbance

    nlohmann::json identity(const char* subject) const;
    std::string name() const;
};

}  // namespace orvane::bench::report

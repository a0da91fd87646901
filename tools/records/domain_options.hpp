/// @file domain_options.hpp
/// @brief The domain that a subcommand joins, and with which credentials.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvane::tools {

struct DomainOptions {
    std::int32_t id = 0;
    std::string security{};  ///< the folder of the credentials; empty: joins without DDS Security
    /// Topics that the subcommand would read, and that the credentials do not allow to read.
    std::vector<std::string> unreadable{};
    std::optional<std::int64_t> expiry{};  ///< of the credentials, in seconds since 1970-01-01 UTC

    bool may_read(const std::string& topic) const {
        return std::find(unreadable.begin(), unreadable.end(), topic) == unreadable.end();
    }
};

}  // namespace orvane::tools

/// @file two_hosts.hpp
/// @brief Two hosts of the test's own: network namespaces with a link between them.
#pragma once

#include <array>
#include <string>
#include <vector>

namespace orvane::tests {

class TwoHosts {
public:
    /// @return why this machine makes no network namespaces; empty when it does
    static std::string obstacle();

    /// Throws an exception that says why when a step fails.
    TwoHosts();
    /// Removes the namespaces with all that is in them.
    ~TwoHosts();
    TwoHosts(const TwoHosts&) = delete;
    TwoHosts& operator=(const TwoHosts&) = delete;

    /// What starts a program on a host, 0 or 1.
    std::vector<std::string> launcher(std::size_t host) const;

private:
    std::array<std::string, 2> hosts_;
};

}  // namespace orvane::tests

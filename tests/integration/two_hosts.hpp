/// @file two_hosts.hpp
/// @brief Two hosts of the test's own: network namespaces with a link between them.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/integration/child_process.hpp"

namespace orvane::tests {

enum class Link {
    veth,   ///< loses nothing
    lossy,  ///< loses 5 % of the frames and delays each by 20 ms
};

class TwoHosts {
public:
    explicit TwoHosts(Link link);
    /// Removes the namespaces with all that is in them.
    ~TwoHosts();
    TwoHosts(const TwoHosts&) = delete;
    TwoHosts& operator=(const TwoHosts&) = delete;

    /// @return why the hosts are not there; empty when they are
    [[nodiscard]] const std::string& failure() const { return failure_; }

    /// What starts a program on a host, 0 or 1.
    /// @param environment settings such as "NAME=value"
    [[nodiscard]] std::vector<std::string> launcher(
        int host, const std::vector<std::string>& environment = {}) const;

private:
    bool run(const std::string& command);
    bool make_wire();

    std::string hosts_[2];
    std::string failure_;
    std::unique_ptr<ChildProcess> wire_;
};

}  // namespace orvane::tests

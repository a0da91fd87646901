/// @file foreign_process.hpp
/// @brief The program of foreign_peer.cpp, which explains its lines, as a process of a test.
#pragma once

#include <chrono>
#include <map>
#include <string>
#include <vector>

#include "tests/integration/programs.hpp"

namespace orvane::tests {

using Fields = std::map<std::string, std::string>;

/// A sample as the peer understood it; without anything when none has come.
struct ForeignSample {
    Fields properties;  ///< of the sample as a whole
    Fields members;
    std::string order;  ///< of the members, their names separated by spaces
};

class ForeignPeer {
public:
    /// @param option as foreign_peer.cpp describes
    explicit ForeignPeer(const std::string& option = "")
        : process_{{ORVANE_FOREIGN_PEER, domain(), option}} {}

    /// Repeats a request that changes nothing until the application answers.
    /// @return whether it did. @param identity "HOST:APP" as the application tells it
    bool meet(const std::string& identity);

    /// Sends a request. @return its invocation, which no other request of this test program has
    std::string send(const std::string& identity, const std::string& words);
    /// Sends a request and waits for the response.
    ForeignSample ask(const std::string& identity, const std::string& words);

    /// Waits for a sample of @p kind ("log", "state" or "response") whose members have at least
    /// these values.
    ForeignSample await(const std::string& kind, const Fields& members,
                        std::chrono::milliseconds longest = patience);
    /// What the peer could not understand.
    std::vector<std::string> complaints();

    ChildProcess& process() { return process_; }

private:
    ChildProcess process_;
};

}  // namespace orvane::tests

#include "tests/integration/two_hosts.hpp"

#include <unistd.h>

#include <chrono>
#include <sstream>

namespace orvane::tests {
namespace {

constexpr std::chrono::seconds patience{10};

std::vector<std::string> words_of(const std::string& command) {
    std::istringstream stream{command};
    std::vector<std::string> words;
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    return words;
}

}  // namespace

TwoHosts::TwoHosts(Link link) {
    const std::string id = std::to_string(getpid());
    hosts_[0] = "orvane-a-" + id;
    hosts_[1] = "orvane-b-" + id;
    for (const std::string& host : hosts_) {
        if (!run("ip netns add " + host) || !run("ip -n " + host + " link set lo up")) {
            return;
        }
    }
    const bool linked = link == Link::lossy ? make_wire()
                                            : run("ip link add wire netns " + hosts_[0] +
                                                  " type veth peer name wire netns " + hosts_[1]);
    for (int host = 0; linked && host < 2; ++host) {
        if (!run("ip -n " + hosts_[host] + " address add 10.77.0." + std::to_string(host + 1) +
                 "/24 dev wire") ||
            !run("ip -n " + hosts_[host] + " link set wire up")) {
            return;
        }
    }
}

TwoHosts::~TwoHosts() {
    wire_.reset();
    for (const std::string& host : hosts_) {
        ChildProcess{words_of("ip netns delete " + host)}.wait_for_end(patience);
    }
}

std::vector<std::string> TwoHosts::launcher(int host,
                                            const std::vector<std::string>& environment) const {
    std::vector<std::string> command = words_of("ip netns exec " + hosts_[host] + " env");
    command.emplace_back(
        "CYCLONEDDS_URI=<Domain><General><Interfaces><NetworkInterface name=\"wire\"/>"
        "</Interfaces></General></Domain>");
    command.insert(command.end(), environment.begin(), environment.end());
    return command;
}

bool TwoHosts::run(const std::string& command) {
    ChildProcess process{words_of(command)};
    if (process.wait_for_end(patience) == "exit 0") {
        return true;
    }
    failure_ = command + ": " + process.transcript();
    return false;
}

bool TwoHosts::make_wire() {
    wire_ = std::make_unique<ChildProcess>(
        std::vector<std::string>{ORVANE_LOSSY_WIRE, hosts_[0], hosts_[1], "5", "20"});
    const bool up = wire_->wait_until(
        [](const Output& output) { return !output.out.empty() && output.out[0] == "> up"; },
        patience);
    if (!up) {
        failure_ = "lossy_wire: " + wire_->transcript();
    }
    return up;
}

}  // namespace orvane::tests

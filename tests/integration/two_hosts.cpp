#include "tests/integration/two_hosts.hpp"

#include <unistd.h>

#include <sstream>
#include <stdexcept>

#include "tests/integration/application.hpp"

namespace orvane::tests {
namespace {

std::vector<std::string> words_of(const std::string& command) {
    std::istringstream stream{command};
    std::vector<std::string> words;
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    return words;
}

/// Runs `ip`. @return its message when it fails, else nothing
std::string failure_of(const std::string& arguments) {
    ChildProcess process{words_of("ip " + arguments)};
    const bool succeeded = process.wait_for_end(patience) == "exit 0";
    return succeeded ? "" : "ip " + arguments + ": " + process.transcript();
}

void run(const std::string& arguments) {
    if (const std::string failure = failure_of(arguments); !failure.empty()) {
        throw std::runtime_error{failure};
    }
}

std::string name_of(const std::string& host) {
    return "orvane-" + host + '-' + std::to_string(getpid());
}

}  // namespace

std::string TwoHosts::obstacle() {
    const std::string host = name_of("probe");
    const std::string failure = failure_of("netns add " + host);
    if (failure.empty()) {
        run("netns delete " + host);
    }
    return failure;
}

TwoHosts::TwoHosts() : hosts_{name_of("a"), name_of("b")} {
    for (const std::string& host : hosts_) {
        run("netns add " + host);
        run("-n " + host + " link set lo up");
    }
    run("link add wire netns " + hosts_[0] + " type veth peer name wire netns " + hosts_[1]);
    for (std::size_t host = 0; host < hosts_.size(); ++host) {
        run("-n " + hosts_[host] + " address add 10.77.0." + std::to_string(host + 1) +
            "/24 dev wire");
        run("-n " + hosts_[host] + " link set wire up");
    }
}

TwoHosts::~TwoHosts() {
    for (const std::string& host : hosts_) {
        failure_of("netns delete " + host);
    }
}

std::vector<std::string> TwoHosts::launcher(std::size_t host) const {
    std::vector<std::string> command = words_of("ip netns exec " + hosts_[host] + " env");
    command.emplace_back(
        "CYCLONEDDS_URI=<Domain><General><Interfaces><NetworkInterface name=\"wire\"/>"
        "</Interfaces></General></Domain>");
    return command;
}

}  // namespace orvane::tests

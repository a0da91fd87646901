#include "tests/peer/foreign_process.hpp"

#include <algorithm>
#include <sstream>

namespace orvane::tests {
namespace {

std::vector<std::string> peer_command(int domain_id, const std::vector<std::string>& options) {
    std::vector<std::string> command{ORVANE_FOREIGN_PEER, std::to_string(domain_id)};
    command.insert(command.end(), options.begin(), options.end());
    return command;
}

ForeignSample parse(const std::string& line) {
    ForeignSample sample;
    std::istringstream fields{line};
    std::string field;
    std::getline(fields, field, '\t');
    while (std::getline(fields, field, '\t')) {
        const std::size_t equals = field.find('=');
        const std::string name = field.substr(0, equals);
        if (name.starts_with('@')) {
            sample.properties[name.substr(1)] = field.substr(equals + 1);
            continue;
        }
        sample.members[name] = field.substr(equals + 1);
        sample.order += (sample.order.empty() ? "" : " ") + name;
    }
    return sample;
}

bool has(const ForeignSample& sample, const Fields& members) {
    return std::includes(sample.members.begin(), sample.members.end(), members.begin(),
                         members.end());
}

std::vector<ForeignSample> samples_in(const Output& output, const std::string& kind) {
    std::vector<ForeignSample> samples;
    for (const std::string& line : output.out) {
        if (line.starts_with(kind + '\t')) {
            samples.push_back(parse(line));
        }
    }
    return samples;
}

}  // namespace

ForeignPeer::ForeignPeer(int domain_id, const std::vector<std::string>& options)
    : process_{peer_command(domain_id, options)} {}

bool ForeignPeer::meet(const std::string& identity) {
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds between_requests{100};
    const Clock::time_point deadline = Clock::now() + patience;
    while (Clock::now() < deadline) {
        send(identity, "verbosities=");
        if (!await("response", {{"logger", identity}}, between_requests).members.empty()) {
            return true;
        }
    }
    return false;
}

std::string ForeignPeer::send(const std::string& identity, const std::string& words) {
    static int last_invocation = 0;
    std::string invocation = std::to_string(++last_invocation);
    process_.send_line("request target=" + identity + " invocation=" + invocation + ' ' + words);
    return invocation;
}

ForeignSample ForeignPeer::ask(const std::string& identity, const std::string& words) {
    return await("response", {{"invocation", send(identity, words)}});
}

ForeignSample ForeignPeer::await(const std::string& kind, const Fields& members,
                                 std::chrono::milliseconds longest) {
    ForeignSample found;
    process_.wait_until(
        [&](const Output& output) {
            for (ForeignSample& sample : samples_in(output, kind)) {
                if (has(sample, members)) {
                    found = std::move(sample);
                    return true;
                }
            }
            return false;
        },
        longest);
    return found;
}

std::vector<ForeignSample> ForeignPeer::samples(const std::string& kind) {
    return samples_in(process_.output(), kind);
}

std::vector<std::string> ForeignPeer::complaints() {
    Output output = process_.output();
    std::erase_if(output.out, [](const std::string& line) { return !line.starts_with("error"); });
    output.out.insert(output.out.end(), output.error.begin(), output.error.end());
    return output.out;
}

}  // namespace orvane::tests

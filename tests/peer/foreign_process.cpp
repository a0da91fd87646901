#include "tests/peer/foreign_process.hpp"

#include <algorithm>
#include <sstream>

namespace orvane::tests {
namespace {

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

}  // namespace

bool ForeignPeer::meet(const std::string& identity) {
    constexpr std::chrono::milliseconds between_requests{100};
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (std::chrono::steady_clock::now() < deadline) {
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
    process_.send_line("target=" + identity + " invocation=" + invocation + ' ' + words);
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
            return std::any_of(output.out.begin(), output.out.end(), [&](const std::string& line) {
                ForeignSample sample = parse(line);
                const bool matches = line.starts_with(kind + '\t') && has(sample, members);
                found = matches ? std::move(sample) : ForeignSample{};
                return matches;
            });
        },
        longest);
    return found;
}

std::vector<std::string> ForeignPeer::complaints() {
    Output output = process_.output();
    std::erase_if(output.out, [](const std::string& line) { return !line.starts_with("error"); });
    output.out.insert(output.out.end(), output.error.begin(), output.error.end());
    return output.out;
}

}  // namespace orvane::tests

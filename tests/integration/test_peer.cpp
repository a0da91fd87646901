// The program that tests run beside themselves:
//
//   test_peer log DOMAIN [--kind APPLICATION_KIND] [--profile LIBRARY PROFILE]
//       An application that logs as its input says, one command a line:
//           log LEVEL COUNT GAP_US    logs the next COUNT numbers, with a pause after each
//           stamped LEVEL COUNT       logs the next COUNT numbers, each with a time of its own
//           say LEVEL CATEGORY TEXT   logs both texts, in hexadecimal, "-" for an empty one
//           identity                  answers HOST:APP, as the viewer shows it
//           finish                    finalises the logger
//       It answers every command by a line. For each number it prints "logged LEVEL BEFORE AFTER
//       NUMBER", where the middle is the wall clock around the call in nanoseconds.
//   test_peer flood DOMAIN COUNT
//       An application that logs as fast as its logger can publish, while the middleware reports
//       all its steps to the logger's device. It waits for a line, logs COUNT messages of the
//       category "flood" and one of "com.qel.end", and waits for the end of its input. It prints
//       "memory BYTES", its heap in use, after a tenth of the messages and after the last.
//   test_peer threads DOMAIN CYCLES
//       An application that starts and finalises its logger CYCLES times while eight threads log
//       and the middleware reports the samples of the trigger topic. It prints "cycle N" after
//       each cycle.
//   test_peer listener DOMAIN CYCLES
//       The same, with a logger in the application's participant, whose listener logs for every
//       sample of the trigger topic.
//   test_peer trigger DOMAIN
//       Prints "triggering" and writes samples of the trigger topic until its input ends.
//   test_peer visit DOMAIN
//       A remote tool that joins the domain, reads logs and States, sends commands to each logger
//       and leaves, again and again until its input ends. It prints "visited" after the first
//       answer to a command.
//
// The lines that are named here begin with "> ", but for "logged".

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/integration/peer.hpp"

namespace orvane::tests {
namespace {

bool run(const std::string& mode, int domain_id, const std::vector<std::string>& rest) {
    const auto count = [&] { return std::stoi(rest.at(0)); };
    if (mode == "log") {
        obey(domain_id, rest);
    } else if (mode == "flood") {
        flood(domain_id, count());
    } else if (mode == "threads") {
        fire_from_threads(domain_id, count());
    } else if (mode == "listener") {
        fire_from_listener(domain_id, count());
    } else if (mode == "trigger") {
        trigger_until_input_ends(domain_id);
    } else if (mode == "visit") {
        visit_until_input_ends(domain_id);
    } else {
        return false;
    }
    return true;
}

}  // namespace
}  // namespace orvane::tests

int main(int argc, char** argv) {
    if (argc < 3 || !orvane::tests::run(argv[1], std::atoi(argv[2]), {argv + 3, argv + argc})) {
        std::fputs("usage: test_peer MODE DOMAIN …; see test_peer.cpp\n", stderr);
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}

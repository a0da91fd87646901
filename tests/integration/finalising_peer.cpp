// An application that starts and finalises its logger again and again while it is logging.
//
//   finalising_peer threads DOMAIN CYCLES    eight threads log without a pause, and the middleware
//                                            reports to the logger's device all that it does, such
//                                            as receiving the samples of the trigger topic
//   finalising_peer listener DOMAIN CYCLES   the logger shares the application's participant, whose
//                                            listener logs for every sample of the trigger topic
//   finalising_peer pull DOMAIN              writes samples of that topic until its input ends
//   finalising_peer hang DOMAIN              hangs
//
// The end of every cycle is told by a line "> cycle N". A cycle that does not end makes the program
// print the stacks of its threads and abort.

#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "orvane/orvane.h"
#include "tests/integration/peer_logger.hpp"
#include "tests/integration/peer_protocol.hpp"
#include "tests/integration/self_trigger.hpp"
#include "tests/integration/watchdog.hpp"

namespace orvane::tests {
namespace {

using namespace std::chrono_literals;

constexpr auto longest_cycle = 20s;

std::FILE* answers = nullptr;

OptionsPointer options_for(int domain_id) {
    OptionsPointer options{QEL_KX_Options_createDefault()};
    QEL_KX_Options_setDomainId(options.get(), domain_id);
    QEL_KX_Options_setFilterLevel(options.get(), QEL_KX_LEVEL_TRACE);
    return options;
}

/// Takes the standard output for @ref tell alone. The middleware prints there what it reports while
/// there is no logger, which is more than a test can read in time.
void silence_middleware() {
    const int output = dup(STDOUT_FILENO);
    if (std::freopen("/dev/null", "w", stdout) == nullptr || output < 0) {
        std::exit(EXIT_FAILURE);
    }
    answers = fdopen(output, "w");
}

void tell(const std::string& text) {
    std::fprintf(answers, "%s%s\n", std::string{answer_mark}.c_str(), text.c_str());
    std::fflush(answers);
}

/// Starts and finishes; @p under_fire waits until there has been logging in that cycle.
bool run_cycles(PeerLogger& logger, int cycles, const std::function<OptionsPointer()>& make_options,
                const std::function<void(int cycle)>& under_fire) {
    Watchdog watchdog{longest_cycle};
    for (int cycle = 1; cycle <= cycles; ++cycle) {
        if (!logger.start(make_options())) {
            tell("could not start in cycle " + std::to_string(cycle));
            return false;
        }
        under_fire(cycle);
        if (logger.finish() != DDS_RETCODE_OK) {
            tell("could not finalise in cycle " + std::to_string(cycle));
            return false;
        }
        tell("cycle " + std::to_string(cycle));
        watchdog.all_is_well();
    }
    return true;
}

bool fire_from_threads(int domain_id, int cycles) {
    // Most instances live for a few milliseconds only. In each tenth there is time for remote tools
    // to find it and to send commands.
    const auto calls_in = [](int cycle) { return cycle % 10 == 0 ? 4000 : 400; };
    // Keeps the engine's threads busy, and reporting, while the logger comes and goes.
    const std::unique_ptr<SelfTrigger> trigger = SelfTrigger::open(domain_id, [](auto) {});
    if (!trigger) {
        return false;
    }
    PeerLogger logger;
    std::atomic<int> calls{0};
    const auto keep_logging = [&](const std::stop_token& token) {
        while (!token.stop_requested()) {
            QEL_KX_Orvane_logMessageWithLevelCategory(logger.instance(), QEL_KX_LEVEL_INFO, "fire",
                                                      "thread");
            ++calls;
            std::this_thread::sleep_for(200us);
        }
    };
    std::array<std::jthread, 8> threads;
    for (std::jthread& thread : threads) {
        thread = std::jthread{keep_logging};
    }
    return run_cycles(
        logger, cycles,
        [&] {
            // Again each time, because remote tools change it.
            PEXA_Config_Logger_set_verbosity(PEXA_Config_Logger_get_instance(),
                                             PEXA_CONFIG_LOG_VERBOSITY_STATUS_ALL);
            return options_for(domain_id);
        },
        [&](int cycle) {
            const int enough = calls + calls_in(cycle);
            while (calls < enough) {
                std::this_thread::sleep_for(1ms);
            }
        });
}

/// Pulls until the token says stop.
void keep_pulling(const std::stop_token& token, SelfTrigger& trigger) {
    while (!token.stop_requested()) {
        trigger.pull("go");
        std::this_thread::sleep_for(1ms);
    }
}

bool fire_from_listener(int domain_id, int cycles) {
    constexpr int samples_per_cycle = 50;
    PeerLogger logger;
    const std::unique_ptr<SelfTrigger> trigger =
        SelfTrigger::open(domain_id, [&](std::string_view text) {
            QEL_KX_Orvane_info(logger.instance(), std::string{text}.c_str());
        });
    if (!trigger) {
        return false;
    }
    // One thread of the application and, from the process that pulls, one of the engine's.
    const std::jthread puller{keep_pulling, std::ref(*trigger)};
    const bool finished = run_cycles(
        logger, cycles,
        [&] {
            OptionsPointer options = options_for(domain_id);
            QEL_KX_Options_setDomainParticipant(options.get(), trigger->participant());
            return options;
        },
        [&](int) { trigger->wait_until_heard(trigger->heard() + samples_per_cycle, 20s); });
    return finished && trigger->heard() >= cycles * samples_per_cycle;
}

bool pull(int domain_id) {
    const std::unique_ptr<SelfTrigger> trigger = SelfTrigger::open(domain_id, [](auto) {});
    if (!trigger) {
        return false;
    }
    const std::jthread puller{keep_pulling, std::ref(*trigger)};
    tell("pulling");
    std::cin.get();
    return true;
}

void hang(int domain_id) {
    const std::unique_ptr<SelfTrigger> trigger = SelfTrigger::open(domain_id, [](auto) {});
    const Watchdog watchdog{100ms};
    std::this_thread::sleep_for(longest_cycle);
}

bool run(const std::vector<std::string>& arguments) {
    const std::string mode = arguments.empty() ? "" : arguments[0];
    const int domain_id = arguments.size() > 1 ? std::stoi(arguments[1]) : 0;
    const int cycles = arguments.size() > 2 ? std::stoi(arguments[2]) : 0;
    if (mode == "threads") {
        return fire_from_threads(domain_id, cycles);
    }
    if (mode == "listener") {
        return fire_from_listener(domain_id, cycles);
    }
    if (mode == "hang") {
        hang(domain_id);
        return false;
    }
    return mode == "pull" && pull(domain_id);
}

}  // namespace
}  // namespace orvane::tests

int main(int argc, char** argv) {
    orvane::tests::silence_middleware();
    return orvane::tests::run({argv + 1, argv + argc}) ? EXIT_SUCCESS : EXIT_FAILURE;
}

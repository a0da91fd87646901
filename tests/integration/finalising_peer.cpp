// An application that starts and finalises its logger again and again while it is logging.
//
//   finalising_peer threads DOMAIN CYCLES    four threads log without a pause, and the middleware
//                                            reports to the logger's device all that it does, such
//                                            as receiving the samples of the trigger topic
//   finalising_peer listener DOMAIN CYCLES   the logger shares the application's participant, whose
//                                            listener logs for every sample of the trigger topic
//   finalising_peer pull DOMAIN              writes samples of that topic until its input ends
//
// The end of every cycle is told by a line "> cycle N".

#include <array>
#include <atomic>
#include <chrono>
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

namespace orvane::tests {
namespace {

using namespace std::chrono_literals;

OptionsPointer options_for(int domain_id) {
    OptionsPointer options{QEL_KX_Options_createDefault()};
    QEL_KX_Options_setDomainId(options.get(), domain_id);
    QEL_KX_Options_setFilterLevel(options.get(), QEL_KX_LEVEL_TRACE);
    return options;
}

/// Prints a line in one piece: the middleware's threads print too.
void tell(const std::string& text) {
    std::cout << (std::string{answer_mark} + text + '\n') << std::flush;
}

/// Starts and finishes; @p under_fire waits until there has been logging in this cycle.
bool run_cycles(PeerLogger& logger, int cycles, const std::function<OptionsPointer()>& make_options,
                const std::function<void()>& under_fire) {
    for (int cycle = 1; cycle <= cycles; ++cycle) {
        if (!logger.start(make_options())) {
            tell("could not start in cycle " + std::to_string(cycle));
            return false;
        }
        under_fire();
        if (logger.finish() != DDS_RETCODE_OK) {
            tell("could not finalise in cycle " + std::to_string(cycle));
            return false;
        }
        tell("cycle " + std::to_string(cycle));
    }
    return true;
}

bool fire_from_threads(int domain_id, int cycles) {
    constexpr int calls_per_cycle = 400;
    // Keeps the engine's threads busy, and reporting, while the logger comes and goes.
    const std::unique_ptr<SelfTrigger> trigger = SelfTrigger::open(domain_id, [](auto) {});
    if (!trigger) {
        return false;
    }
    PEXA_Config_Logger_set_verbosity(PEXA_Config_Logger_get_instance(),
                                     PEXA_CONFIG_LOG_VERBOSITY_STATUS_ALL);
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
    const std::array<std::jthread, 4> threads{
        std::jthread{keep_logging}, std::jthread{keep_logging}, std::jthread{keep_logging},
        std::jthread{keep_logging}};
    return run_cycles(
        logger, cycles, [&] { return options_for(domain_id); },
        [&] {
            const int enough = calls + calls_per_cycle;
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
        [&] { trigger->wait_until_heard(trigger->heard() + samples_per_cycle, 20s); });
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
    return mode == "pull" && pull(domain_id);
}

}  // namespace
}  // namespace orvane::tests

int main(int argc, char** argv) {
    return orvane::tests::run({argv + 1, argv + argc}) ? EXIT_SUCCESS : EXIT_FAILURE;
}

#include "tests/integration/peer.hpp"

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <thread>
#include <utility>

#include "tools/domain/administration.hpp"
#include "tools/domain/log_subscription.hpp"

namespace orvane::tests {
namespace {

using namespace std::chrono_literals;
using tools::Administration;

/// The commands in turn, so that every setting keeps changing.
tools::Command command_number(int number) {
    switch (number % 4) {
        case 0:
            return tools::SetFilterLevel{number % 8 < 4 ? QEL_KX_LEVEL_TRACE : QEL_KX_LEVEL_INFO};
        case 1:
            return tools::SetVerbosities{
                {{QEL_KX_PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION,
                  QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_STATUS_ALL},
                 {QEL_KX_PEXA_CONFIG_LOG_CATEGORY_API, QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_WARNING}}};
        case 2:
            return tools::SetPrintFormat{number % 8 < 4
                                             ? QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_MAXIMAL
                                             : QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_DEFAULT};
        default:
            return tools::SetFilterLevel{-1};
    }
}

/// One visit of the mode "visit".
/// @param next_command goes on from visit to visit
/// @return whether a command was answered
bool visit(int domain_id, int& next_command) {
    const std::unique_ptr<tools::LogSubscription> logs = tools::LogSubscription::open(domain_id);
    const std::unique_ptr<Administration> administration = Administration::open(domain_id);
    if (!logs || !administration) {
        std::exit(EXIT_FAILURE);
    }
    bool answered = false;
    const auto end = Administration::Clock::now() + 400ms;
    while (Administration::Clock::now() < end) {
        administration->wait(20ms);
        if (const tools::Result<tools::Arrivals> arrivals = administration->take()) {
            for (const tools::CommandResponse& response : arrivals->responses) {
                answered |= response.originator == administration->identity();
            }
        }
        for (const tools::Application& logger : administration->command_readers()) {
            const int number = next_command++;
            // Loggers end at any time: that a command or a message gets lost is no failure.
            static_cast<void>(administration->send(logger, number, command_number(number)));
        }
        static_cast<void>(logs->take());
    }
    return answered;
}

}  // namespace

void visit_until_input_ends(int domain_id) {
    std::atomic<bool> over{false};
    const std::jthread input{[&] {
        std::cin.get();
        over = true;
    }};
    bool told = false;
    for (int next_command = 0; !over;) {
        if (visit(domain_id, next_command) && !std::exchange(told, true)) {
            tell("visited");
        }
    }
}

}  // namespace orvane::tests

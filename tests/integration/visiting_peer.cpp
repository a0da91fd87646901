// A remote tool that comes and goes: joins the domain, reads logs and States, sends each logger
// that it meets a command or two, and leaves, again and again until its input ends.
//
//   visiting_peer DOMAIN
//
// Prints "> visited" after the first command that was answered, and in the end
// "> visits N answers N".

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "orvane/core.h"
#include "tests/integration/peer_protocol.hpp"
#include "tools/domain/administration.hpp"
#include "tools/domain/log_subscription.hpp"

namespace orvane::tests {
namespace {

using namespace std::chrono_literals;
using tools::Administration;

/// One of each kind in turn, so that every setting keeps changing.
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

class Visitor {
public:
    explicit Visitor(int domain_id) : domain_id_(domain_id) {}

    void visit() {
        constexpr auto stay = 400ms;
        const std::unique_ptr<tools::LogSubscription> logs =
            tools::LogSubscription::open(domain_id_);
        const std::unique_ptr<Administration> administration = Administration::open(domain_id_);
        if (!logs || !administration) {
            std::cerr << "visiting_peer: could not join\n";
            std::exit(EXIT_FAILURE);
        }
        ++visits_;
        const auto end = Administration::Clock::now() + stay;
        while (Administration::Clock::now() < end) {
            administration->wait(20ms);
            attend(*administration);
            std::vector<tools::LogRecord> records;
            static_cast<void>(logs->take(records));
        }
    }

    [[nodiscard]] std::string summary() const {
        return "visits " + std::to_string(visits_) + " answers " + std::to_string(answers_);
    }

private:
    void attend(Administration& administration) {
        const std::optional<tools::Arrivals> arrivals = administration.take();
        for (const tools::CommandAnswer& answer :
             arrivals ? arrivals->answers : std::vector<tools::CommandAnswer>{}) {
            if (answer.originator == administration.identity() && answers_++ == 0) {
                std::cout << answer_mark << "visited" << std::endl;
            }
        }
        for (const tools::Application& logger : administration.receivers()) {
            static_cast<void>(
                administration.send(logger, invocation_, command_number(invocation_)));
            ++invocation_;
        }
    }

    int domain_id_;
    int visits_ = 0;
    int answers_ = 0;
    int invocation_ = 0;
};

}  // namespace
}  // namespace orvane::tests

int main(int argc, char** argv) {
    orvane::tests::Visitor visitor{argc > 1 ? std::stoi(argv[1]) : 0};
    std::atomic<bool> over{false};
    const std::jthread input{[&] {
        std::cin.get();
        over = true;
    }};
    while (!over) {
        visitor.visit();
    }
    std::cout << orvane::tests::answer_mark << visitor.summary() << std::endl;
    return EXIT_SUCCESS;
}

#include "tools/domain/command_round.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <initializer_list>
#include <string>
#include <vector>

#include "tests/tools/fake_domain.hpp"
#include "tools/text/logger_text.hpp"

namespace orvane::tools {
namespace {

/// The lines of `set-level '*' DEBUG` for these loggers.
std::string set_debug(FakeDomain& domain) {
    DomainView view{domain};
    EXPECT_EQ(view.discover(nullptr, 5s), Status::ok);
    const Command command = SetFilterLevel{700};
    const auto outcomes = run_command(view, view.loggers(), command, 5s);
    std::string lines;
    for (const CommandOutcome& outcome : outcomes.value()) {
        lines += outcome_line(outcome, command, 5s);
    }
    return lines;
}

TEST(CommandRound, TellsWhatBecameOfTheCommandAtEachLogger) {
    LoggerState debug = logger_state(9, "debug");
    debug.filter_level = 700;
    FakeDomain domain{{
        {.state = logger_state(1, "pump")},
        {.state = logger_state(2, "slow"), .receives = 3s, .shows_after = 2s},
        {.state = logger_state(3, "stern"),
         .result = QEL_KX_COMMAND_RESULT_ERROR,
         .message = "not\x1b[2J now"},
        {.state = logger_state(4, "simple"), .result = QEL_KX_COMMAND_RESULT_NOT_SUPPORTED},
        {.state = logger_state(5, "mute"), .deaf_requests = 100},
        {.state = logger_state(6, "closed"), .receives = {}},
        {.state = logger_state(7, "mortal"), .dies = 1500ms, .deaf_requests = 100},
        {.state = logger_state(8, "stubborn"), .shows_after = {}},
        {.state = debug, .shows_after = {}},
    }};
    EXPECT_EQ(
        set_debug(domain),
        "0a141e28:00000001 pump  filter level INFO -> DEBUG\n"
        "0a141e28:00000002 slow  filter level INFO -> DEBUG\n"
        "0a141e28:00000003 stern  refused: not\\x1b[2J now (filter level INFO)\n"
        "0a141e28:00000004 simple  not supported (filter level INFO)\n"
        "0a141e28:00000005 mute  no answer within 5 s\n"
        "0a141e28:00000006 closed  takes no commands: it has shown no reader of them within 5 s\n"
        "0a141e28:00000007 mortal  gone before it answered\n"
        "0a141e28:00000008 stubborn  answered OK, but its State says: filter level INFO\n"
        "0a141e28:00000009 debug  filter level DEBUG\n");
}

TEST(CommandRound, EndsWithTheLastAnswerAndItsEffect) {
    FakeDomain domain{{{.state = logger_state(1, "pump")},
                       {.state = logger_state(3, "mortal"), .dies = 1500ms, .deaf_requests = 100},
                       {.state = logger_state(2, "slow"), .receives = 2s, .shows_after = 300ms}}};
    set_debug(domain);
    EXPECT_EQ(domain.elapsed(), 2300ms);
}

TEST(CommandRound, RepeatsARequestUnderItsNumberUntilItIsAnswered) {
    FakeDomain domain{{{.state = logger_state(1, "pump")},
                       {.state = logger_state(2, "slow"), .deaf_requests = 2}}};
    EXPECT_NE(set_debug(domain).find("slow  filter level INFO -> DEBUG"), std::string::npos);

    std::string sent;
    for (const FakeDomain::Sent& each : domain.sent()) {
        const auto time = each.time - domain.sent().front().time;
        sent += std::to_string(each.invocation) + '@' + std::to_string(time.count()) + ' ';
    }
    EXPECT_EQ(sent, "1@0 2@0 2@1000 2@2000 ");
}

TEST(CommandRound, HeedsOnlyTheAnswersToItsOwnRequests) {
    const LoggerState pump = logger_state(1, "pump");
    FakeDomain domain{{{.state = pump, .receives = 2s}}};
    for (const CommandResponse& answer : std::initializer_list<CommandResponse>{
             {pump.application, {1, 2}, 1, QEL_KX_COMMAND_RESULT_ERROR, "to another tool"},
             {pump.application, {1, 1}, 2, QEL_KX_COMMAND_RESULT_ERROR, "to another request"},
             {{9, 9}, {1, 1}, 1, QEL_KX_COMMAND_RESULT_ERROR, "by another logger"}}) {
        domain.at(1500ms, [answer](Arrivals& arrivals) { arrivals.responses.push_back(answer); });
    }
    EXPECT_EQ(set_debug(domain), "0a141e28:00000001 pump  filter level INFO -> DEBUG\n");
}

}  // namespace
}  // namespace orvane::tools

#include <gtest/gtest.h>

#include <initializer_list>

#include "tests/tools/fake_domain.hpp"
#include "tools/domain/command_round.hpp"
#include "tools/domain/state_writers.hpp"
#include "tools/domain/view.hpp"
#include "tools/text/logger_text.hpp"
#include "tools/text/shared_ids.hpp"
#include "tools/text/target_text.hpp"

namespace orvane::tools {
namespace {

std::string kinds_of(const std::vector<LoggerState>& loggers) {
    std::string kinds;
    for (const LoggerState& logger : loggers) {
        kinds += (kinds.empty() ? "" : " ") + logger.kind;
    }
    return kinds;
}

LoggerTarget target(const char* text) {
    std::string error;
    return parse_target(text, error).value();
}

TEST(DomainView, LooksForLoggersUntilNothingNewComesOrTheOneMeantIsThere) {
    const FakeLogger pump{.state = logger_state(1, "pump")};
    const FakeLogger late{.state = logger_state(2, "late"), .publishes = 900ms, .heard = 950ms};
    const FakeLogger later{.state = logger_state(3, "later"), .publishes = 1800ms, .heard = 2700ms};
    const FakeLogger mute{.state = logger_state(4, "mute"), .heard = {}};
    const struct {
        const char* what;
        std::vector<FakeLogger> loggers;
        const char* target;
        std::chrono::milliseconds longest;
        const char* found;
        std::chrono::milliseconds after;
    } cases[] = {
        {"no logger", {}, "*", 5s, "", 5s},
        {"one", {pump}, "*", 5s, "pump", 1010ms},
        {"news keeps it looking", {pump, late}, "*", 5s, "pump late", 1950ms},
        {"so does a mute writer", {pump, late, later}, "*", 5s, "pump late later", 3700ms},
        {"not for ever", {pump, mute}, "*", 5s, "pump", 5s},
        {"kinds may be of several", {pump, late}, "p*", 5s, "pump late", 1950ms},
        {"a kind that is not there", {pump}, "q*", 5s, "pump", 5s},
        {"an application is one", {pump, late}, "0a141e28:2", 5s, "pump late", 950ms},
        {"shorter than settling", {pump}, "*", 500ms, "pump", 500ms},
    };
    for (const auto& each : cases) {
        FakeDomain domain{each.loggers};
        DomainView view{domain};
        const LoggerTarget wanted = target(each.target);
        EXPECT_EQ(view.discover(&wanted, each.longest), Status::ok) << each.what;
        EXPECT_EQ(kinds_of(view.loggers()), each.found) << each.what;
        EXPECT_EQ(domain.elapsed(), each.after) << each.what;
    }
}

TEST(DomainView, WaitsForNoWriterThatHasSentTheStatesOfOthers) {
    const LoggerState replaying = logger_state(1, "");
    FakeDomain domain{{{.state = replaying, .heard = {}}}};
    domain.at(10ms, [&](Arrivals& arrivals) {
        const LoggerState replayed = logger_state(2, "pump");
        arrivals.states.push_back({replayed.application, replayed, true, replaying.application});
    });
    DomainView view{domain};
    EXPECT_EQ(view.discover(nullptr, 5s), Status::ok);
    EXPECT_EQ(domain.elapsed(), 1010ms);
}

TEST(DomainView, TellsWhatHappensToLoggers) {
    using Kind = LoggerChange::Kind;
    const LoggerState pump = logger_state(1, "pump");
    LoggerState ended = pump;
    ended.state = QEL_KX_STATE_NONOPERATIONAL;
    const struct {
        const char* what;
        StateUpdate update;
        std::vector<Kind> changes;
    } steps[] = {
        {"the end of an unknown one", {pump.application, {}, false}, {}},
        {"a State whose writer is gone", {pump.application, pump, false}, {}},
        {"a State", {pump.application, pump, true}, {Kind::appeared}},
        {"the same State", {pump.application, pump, true}, {}},
        {"its last State with its end",
         {pump.application, ended, false},
         {Kind::changed, Kind::gone}},
        {"another life", {pump.application, pump, true}, {Kind::appeared}},
        {"its end alone", {pump.application, {}, false}, {Kind::gone}},
    };
    FakeDomain domain{{}};
    DomainView view{domain};
    for (const auto& step : steps) {
        domain.at(domain.elapsed() + 1ms,
                  [&](Arrivals& arrivals) { arrivals.states.push_back(step.update); });
        const auto news = view.next(1s);
        ASSERT_TRUE(news) << step.what;
        std::vector<Kind> kinds;
        for (const LoggerChange& change : news->changes) {
            kinds.push_back(change.kind);
        }
        EXPECT_EQ(kinds, step.changes) << step.what;
    }
    EXPECT_TRUE(view.loggers().empty());
}

TEST(DomainView, FindsOfATargetOnlyTheLiving) {
    const struct {
        StateKind state;
        bool found;
    } cases[] = {
        {QEL_KX_STATE_INITIALIZING, true},
        {QEL_KX_STATE_OPERATIONAL, true},
        {QEL_KX_STATE_NONOPERATIONAL, false},
        {QEL_KX_STATE_SHUTTING_DOWN, false},
    };
    for (const auto& each : cases) {
        LoggerState pump = logger_state(1, "pump");
        pump.state = each.state;
        FakeDomain domain{{{.state = pump}}};
        DomainView view{domain};
        ASSERT_TRUE(view.next(1s));
        ASSERT_TRUE(view.next(1s));
        EXPECT_EQ(view.loggers(target("pump")).size(), each.found ? 1U : 0U) << each.state;
    }
}

TEST(DomainView, NumbersLoggersOfAKindByTheirIdsOnceTheyAreFound) {
    FakeDomain domain{{{.state = logger_state(2, "pump")},
                       {.state = logger_state(3, "mill"), .heard = 11ms},
                       {.state = logger_state(1, "pump"), .heard = 12ms}}};
    DomainView view{domain};
    domain.at(1ms, [](Arrivals& arrivals) {
        arrivals.processes.push_back({{0x0a141e28, 1}, {"robot2", "planner", 4711, "10.0.0.1"}});
    });
    // The first pump that was heard is the second one by its ids.
    const LoggerTarget second = target("pump#2");
    ASSERT_EQ(view.discover(&second, 5s), Status::ok);
    EXPECT_EQ(domain.elapsed(), 1012ms);
    ASSERT_EQ(view.loggers(second).size(), 1U);
    EXPECT_EQ(view.loggers(second).front().application.app_id, 2U);
    EXPECT_EQ(view.entries().front().addresses, "10.0.0.1");
    EXPECT_EQ(view.loggers(target("pump@robot*")).size(), 1U);
}

TEST(LoggerDirectory, GivesEveryLoggerANumberThatNoOtherOneOfItsKindGets) {
    const struct {
        const char* what;
        LoggerState state;
        std::uint32_t number;
    } steps[] = {
        {"the first one", logger_state(7, "pump"), 1},
        {"one of another kind", logger_state(2, "mill"), 1},
        {"the second one", logger_state(1, "pump"), 2},
        {"the first one again", logger_state(7, "pump"), 1},
        {"without a kind", logger_state(4, ""), 1},
        {"another one without", logger_state(5, ""), 1},
        {"a kind comes later", logger_state(4, "pump"), 3},
        {"a kind changes", logger_state(2, "pump"), 4},
        {"and another takes it", logger_state(6, "mill"), 2},
    };
    LoggerDirectory directory;
    directory.add({0x0a141e28, 7}, {"robot2", "planner", 4711, "10.0.0.1"});
    for (const auto& step : steps) {
        directory.add(step.state);
        const Logger logger = directory.logger(step.state.application);
        EXPECT_EQ(logger.number, step.number) << step.what;
        EXPECT_EQ(logger.kind, step.state.kind) << step.what;
    }
    EXPECT_EQ(directory.logger({0x0a141e28, 7}),
              (Logger{{0x0a141e28, 7}, "pump", 1, "robot2", "planner", 4711}));
    EXPECT_EQ(directory.logger({1, 1}), (Logger{{1, 1}, "", 1, "", "", 0}));
}

TEST(LoggerDirectory, ForgetsThoseThatWentLongAgo) {
    LoggerDirectory directory;
    constexpr std::uint32_t gone = LoggerDirectory::most_gone + 3;
    const Application first = logger_state(1, "").application;
    const Application second = logger_state(2, "").application;
    const Application third = logger_state(3, "").application;
    for (std::uint32_t id = 1; id <= gone; ++id) {
        directory.add(logger_state(id, "pump"));
        directory.note_end(logger_state(id, "").application);
        if (id == 2) {
            directory.add(logger_state(2, "pump"));
        }
    }
    EXPECT_EQ(directory.logger(first).kind, "");
    EXPECT_EQ(directory.logger(second).number, 2U) << "it has come back";
    EXPECT_EQ(directory.logger(third).kind, "");
    directory.add(logger_state(1, "pump"));
    EXPECT_EQ(directory.logger(first).number, gone + 1);
}

TEST(DomainView, KnowsTheTrafficOfLoggersAsLongAsTheyLive) {
    FakeDomain domain{{{.state = logger_state(1, "pump"), .dies = 20s}}};
    DomainView view{domain};
    const auto hear = [&](std::chrono::milliseconds when, std::uint32_t writer,
                          std::uint64_t logged, bool is_last = false) {
        LoggerStatistics said;
        said.nanoseconds = when / 1ns;
        said.application = logger_state(1, "").application;
        said.writer.guid[3] = writer;
        said.accepted = logged;
        said.is_last = is_last;
        domain.at(when, [=](Arrivals& arrivals) { arrivals.statistics.push_back(said); });
        while (domain.elapsed() < when) {
            EXPECT_TRUE(view.next(when - domain.elapsed()));
        }
        const auto entries = view.entries();
        return entries.empty() ? std::nullopt : entries.front().traffic;
    };
    EXPECT_EQ(hear(1s, 1, 100)->rate, std::nullopt);
    EXPECT_EQ(hear(3s, 1, 150)->rate, 25.0);
    EXPECT_EQ(hear(4s, 2, 10)->rate, std::nullopt) << "another logger of the process";
    EXPECT_EQ(hear(5s, 2, 11, true)->rate, 1.0);
    EXPECT_EQ(hear(21s, 2, 11, true), std::nullopt);
    domain.at(22s, [](Arrivals& arrivals) {
        arrivals.states.push_back({logger_state(1, "").application, logger_state(1, "pump"), true});
    });
    EXPECT_TRUE(view.next(2s));
    EXPECT_EQ(view.entries().front().traffic, std::nullopt);
}

TEST(StateWriters, KnowWhichOfSeveralThatShareHostAndAppHasEnded) {
    using Instance = StateSample::Instance;
    const Application pump{1, 2, 3};
    const Application mill{1, 2, 4};
    const Application forged{1, 2};
    const Endpoint of_pump{{1, 2, 3, 9}};
    const Endpoint of_mill{{1, 2, 4, 9}};
    const Endpoint of_other{{7, 7, 7, 9}};
    const LoggerState state = logger_state(1, "");
    const StateSample pump_lives{pump, state, Instance::alive, of_pump};
    const StateSample mill_lives{mill, state, Instance::alive, of_mill};
    const StateSample forged_lives{forged, state, Instance::alive, of_other};
    const StateSample pump_disposes{pump, state, Instance::disposed, of_pump};
    const StateSample forged_disposes{forged, {}, Instance::disposed, of_other};
    const std::vector<StateSample> both{pump_lives, mill_lives};
    const struct {
        const char* what;
        std::vector<StateSample> before;
        std::vector<StateSample> samples;
        std::set<Endpoint> matched;
        std::set<Application> alive;
    } cases[] = {
        {"one disposes",
         both,
         {{mill, {}, Instance::disposed, of_mill}},
         {of_pump, of_mill},
         {pump}},
        {"a last State hides who disposes",
         both,
         {pump_disposes},
         {of_pump, of_mill},
         {pump, mill}},
        {"even of one alone", {pump_lives}, {pump_disposes}, {of_pump}, {pump}},
        {"but not of a lone forger",
         {forged_lives},
         {{forged, state, Instance::disposed, of_other}},
         {of_other},
         {}},
        {"a writer goes", both, {}, {of_pump}, {pump}},
        {"and its last State comes then", both, {mill_lives}, {of_pump}, {pump}},
        {"all go", both, {{pump, {}, Instance::without_writers, of_pump}}, {of_pump, of_mill}, {}},
        {"a stranger disposes", {pump_lives}, {forged_disposes}, {of_pump, of_other}, {pump}},
        {"a forger goes", {pump_lives, forged_lives}, {}, {of_pump}, {pump}},
        {"a forger disposes",
         {pump_lives, forged_lives},
         {forged_disposes},
         {of_pump, of_other},
         {pump}},
        {"a forger stays", {pump_lives, forged_lives}, {}, {of_other}, {forged}},
    };
    for (const auto& each : cases) {
        StateWriters writers;
        LiveLoggers loggers;
        for (const StateUpdate& update : writers.judge(each.before, {of_pump, of_mill, of_other})) {
            loggers.apply(update);
        }
        EXPECT_EQ(loggers.states().size(), each.before.size()) << each.what;
        for (const StateUpdate& update : writers.judge(each.samples, each.matched)) {
            loggers.apply(update);
        }
        std::set<Application> alive;
        for (const auto& [application, unused] : loggers.states()) {
            alive.insert(application);
        }
        EXPECT_EQ(alive, each.alive) << each.what;
    }
}

TEST(DomainView, TellsLoggersApartThatShareHostAndApp) {
    FakeDomain domain{{{.state = logger_state(1, "pump", 7)},
                       {.state = logger_state(1, "mill", 9), .heard = 30ms},
                       {.state = logger_state(2, "late", 9), .heard = 900ms}}};
    DomainView view{domain};
    const LoggerTarget shared = target("0a141e28:1");
    ASSERT_EQ(view.discover(&shared, 5s), Status::ok);
    EXPECT_EQ(domain.elapsed(), 30ms) << "both are waited for, and nobody else";
    EXPECT_EQ(kinds_of(view.loggers(shared)), "pump mill");
    EXPECT_EQ(kinds_of(view.loggers(target("0a141e28:1:9"))), "mill");
    ASSERT_EQ(view.discover(nullptr, 5s), Status::ok);
    const std::string table = logger_table(view.entries(), {});
    for (const char* text : {"0a141e28:00000001:00000007*  OPER", "0a141e28:00000001:00000009*  O",
                             "0a141e28:00000002            OPER", "\n* shares HOST:APP with an"}) {
        EXPECT_NE(table.find(text), std::string::npos) << text << '\n' << table;
    }
    EXPECT_EQ(view.directory().logger({0x0a141e28, 1}).kind, "pump");
    EXPECT_EQ(view.directory().logger({0x0a141e28, 1, 8}).kind, "");
}

TEST(DomainView, GivesNumbersAndCommandsToTheLoggerItselfBeforeWhoTakesItsName) {
    FakeDomain domain{{{.state = logger_state(1, "pump", 7)}}};
    domain.at(5ms, [](Arrivals& arrivals) {
        const LoggerState forged = logger_state(1, "pump");
        arrivals.states.push_back({forged.application, forged, true, {9, 9, 9}});
    });
    DomainView view{domain};
    ASSERT_EQ(view.discover(nullptr, 5s), Status::ok);
    EXPECT_EQ(view.directory().logger({0x0a141e28, 1, 7}).number, 1U);
    const std::vector<LoggerState> obeying = view.loggers(target("pump"));
    ASSERT_EQ(obeying.size(), 1U);
    EXPECT_EQ(obeying.front().application.instance_id, 7U);
}

TEST(SharedIds, AreToldOnceForEachPairWithTheRemedy) {
    using Kind = LoggerChange::Kind;
    using Texts = std::vector<std::string>;
    const Logger pump{{1, 2, 3}, "pump", 1, "robot1", "pumpd", 11};
    const Logger mill{{1, 2, 4}, "mill", 1, "robot2", "milld", 12};
    const Logger forged{{1, 2}, "pump", 2, "", "", 0};
    Publisher forger;
    forger.logger.application = {7, 7, 7};
    forger.logger.process_id = 13;
    SharedIds ids;
    const auto note = [&](Kind kind, const Logger& logger) {
        return ids.note({0, {kind, {}, {}}, logger});
    };
    EXPECT_EQ(note(Kind::appeared, pump), Texts{});
    EXPECT_EQ(note(Kind::appeared, {{1, 3, 4}, "valve", 1, "", "", 0}), Texts{});
    EXPECT_EQ(note(Kind::appeared, mill),
              Texts{"two loggers share HOST:APP, and a command to one reaches both: "
                    "pump 00000001:00000002:00000003, process 11 (pumpd) on host robot1; "
                    "mill 00000001:00000002:00000004, process 12 (milld) on host robot2. "
                    "What helps is a certificate of its own for each application: "
                    "orvane keys issue"});
    EXPECT_EQ(note(Kind::changed, pump), Texts{});
    EXPECT_EQ(note(Kind::gone, mill), Texts{});
    EXPECT_EQ(ids.meet(forged, std::make_shared<Publisher>(forger)),
              Texts{"a State in the name of pump 00000001:00000002:00000003, process 11 (pumpd) on "
                    "host robot1 comes from another application: 00000007:00000007:00000007, "
                    "process 13"});
}

/// The lines of `set-level LOGGERS DEBUG`.
std::string set_debug(FakeDomain& domain, const char* loggers = "*") {
    DomainView view{domain};
    EXPECT_EQ(view.discover(nullptr, 5s), Status::ok);
    const Command command = SetFilterLevel{700};
    const auto outcomes = run_command(view, view.loggers(target(loggers)), command, 5s);
    std::string lines;
    for (const CommandOutcome& outcome : outcomes.value()) {
        lines +=
            outcome_line(outcome, view.directory().logger(outcome.before.application), command, 5s);
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

TEST(CommandRound, ReachesAllThatShareHostAndAppWithOneRequest) {
    const std::string pump = "0a141e28:00000001:00000007 pump  filter level INFO -> DEBUG\n";
    const std::string mill = "0a141e28:00000001:00000009 mill  refused: no (filter level INFO)";
    const struct {
        const char* loggers;
        std::string lines;
    } cases[] = {
        {"pump", pump + mill + "; it obeys, too, as it shares HOST:APP\n"},
        {"0a141e28:1:7", pump + mill + "; it obeys, too, as it shares HOST:APP\n"},
        {"[pm]*", pump + mill + "\n"},
    };
    for (const auto& each : cases) {
        FakeDomain domain{{{.state = logger_state(1, "pump", 7)},
                           {.state = logger_state(1, "mill", 9),
                            .result = QEL_KX_COMMAND_RESULT_ERROR,
                            .message = "no"},
                           {.state = logger_state(1, "replayed")},
                           {.state = logger_state(2, "other", 7)}}};
        EXPECT_EQ(set_debug(domain, each.loggers), each.lines) << each.loggers;
        EXPECT_EQ(domain.sent().size(), 1U) << each.loggers;
    }
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

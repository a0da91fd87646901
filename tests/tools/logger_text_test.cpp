#include "tools/text/logger_text.hpp"

#include <gtest/gtest.h>

#include <string>

#include "tests/tools/fake_domain.hpp"

namespace orvane::tools {
namespace {

LoggerState hostile_logger() {
    LoggerState logger = logger_state(0xfffffffe, "p\x1b[2J\u00fcmp\n\xff");
    logger.state = QEL_KX_STATE_NONOPERATIONAL;
    logger.filter_level = 650;
    logger.domain_id = -7;
    logger.verbosities[1] = QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_STATUS_REMOTE;
    logger.print_format = QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_MAXIMAL;
    return logger;
}

TEST(LoggerText, StandsInColumnsThatNoKindCanDisturb) {
    // clang-format off
    EXPECT_EQ(logger_table({logger_state(1, ""), hostile_logger()}, {}),
        "LOGGER             KIND               STATE           LEVEL  DOMAIN  PLATFORM  COMMUNICATION  DATABASE  ENTITIES  API    FORMAT\n"
        "0a141e28:00000001  -                  OPERATIONAL     INFO   0       ERROR     ERROR          ERROR     ERROR     ERROR  DEFAULT\n"
        "0a141e28:fffffffe  p\\x1b[2J\u00fcmp\\n\\xff  NONOPERATIONAL  650    -7      ERROR     STATUS_REMOTE  ERROR     ERROR     ERROR  MAXIMAL\n");
    // clang-format on
}

TEST(LoggerText, IsPaintedOnlyWhenAskedTo) {
    const std::string table = logger_table({logger_state(1, "pump")}, {.color = true});
    EXPECT_NE(table.find("  \x1b[32mOPERATIONAL\x1b[0m  INFO"), std::string::npos) << table;
}

TEST(LoggerText, TellsProgramsEverythingInOneLineOfAscii) {
    EXPECT_EQ(change_json_line(
                  {LoggerChange::Kind::changed, logger_state(1, "pump"), hostile_logger()}, 1),
              R"({"event":"changed","time":"1970-01-01T00:00:00.000000001Z",)"
              R"("app":"0a141e28:fffffffe","host_id":169090600,"app_id":4294967294,)"
              R"("kind":"p\u001b[2J\u00fcmp\n\ufffd","state":"NONOPERATIONAL","filter_level":650,)"
              R"("filter_level_name":"650","domain":-7,"verbosities":{"platform":"ERROR",)"
              R"("communication":"STATUS_REMOTE","database":"ERROR","entities":"ERROR",)"
              R"("api":"ERROR"},"print_format":"MAXIMAL"})"
              "\n");
}

TEST(LoggerText, TellsPeopleWhatHasChanged) {
    const LoggerState pump = logger_state(1, "pump");
    LoggerState renamed = pump;
    renamed.kind = "mill";
    LoggerState other = pump;
    other.state = QEL_KX_STATE_NONOPERATIONAL;
    other.filter_level = 0;
    other.verbosities[4] = QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_SILENT;
    other.print_format = QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_MINIMAL;
    const struct {
        LoggerChange change;
        const char* says;
    } cases[] = {
        {{LoggerChange::Kind::appeared, pump, pump},
         " appeared 0a141e28:00000001 pump  OPERATIONAL, filter level INFO\n"},
        {{LoggerChange::Kind::changed, pump, other},
         " changed  0a141e28:00000001 pump  state OPERATIONAL -> NONOPERATIONAL, filter level INFO "
         "-> SILENT, API ERROR -> SILENT, print format DEFAULT -> MINIMAL\n"},
        {{LoggerChange::Kind::changed, pump, renamed},
         " changed  0a141e28:00000001 mill  application kind or domain\n"},
        {{LoggerChange::Kind::gone, other, other}, " gone     0a141e28:00000001 pump  ended\n"},
        {{LoggerChange::Kind::gone, pump, pump}, " gone     0a141e28:00000001 pump  lost\n"},
    };
    for (const auto& each : cases) {
        EXPECT_TRUE(change_line(each.change, 0).ends_with(each.says))
            << change_line(each.change, 0);
    }
}

TEST(LoggerText, ShowsOfAnOutcomeWhatTheCommandWasAbout) {
    const LoggerState before = logger_state(1, "pump");
    LoggerState now = before;
    now.filter_level = 700;
    now.verbosities[1] = QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_WARNING;
    now.print_format = QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_DEBUG;
    const CommandOutcome outcome{
        .before = before, .now = now, .result = QEL_KX_COMMAND_RESULT_OK, .message = {}};
    const SetVerbosities verbosities{
        {{QEL_KX_PEXA_CONFIG_LOG_CATEGORY_API, QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_ERROR},
         {QEL_KX_PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION,
          QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_WARNING}}};
    EXPECT_EQ(outcome_line(outcome, verbosities, 5s),
              "0a141e28:00000001 pump  API ERROR, COMMUNICATION ERROR -> WARNING\n");
    EXPECT_EQ(outcome_line(outcome, SetPrintFormat{QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_DEBUG}, 5s),
              "0a141e28:00000001 pump  print format DEFAULT -> DEBUG\n");
}

}  // namespace
}  // namespace orvane::tools

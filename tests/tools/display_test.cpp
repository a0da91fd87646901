#include "tools/subcommands/display.hpp"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tools/text/target_text.hpp"

namespace orvane::tools {
namespace {

Logger logger(std::uint32_t app_id, std::string kind, std::uint32_t number = 1) {
    Logger logger;
    logger.application = {1, app_id};
    logger.kind = std::move(kind);
    logger.number = number;
    return logger;
}

Event message(const Logger& logger, std::int32_t level, std::string text) {
    return MessageEvent{.record = {.nanoseconds = 0,
                                   .application = logger.application,
                                   .level = level,
                                   .category = "",
                                   .message = std::move(text)},
                        .logger = logger};
}

std::vector<LoggerTarget> targets(const std::vector<const char*>& texts) {
    std::vector<LoggerTarget> targets;
    std::string error;
    for (const char* text : texts) {
        targets.push_back(parse_target(text, error).value());
    }
    return targets;
}

const Logger first_pump = logger(1, "pump");
const Logger second_pump = logger(2, "pump", 2);
const Logger mill = logger(3, "mill");

const std::vector<Event> events = {
    message(first_pump, 600, "a"),           message(mill, 600, "b"),
    message(second_pump, 700, "hidden"),     LossEvent{0, second_pump, 5, 0, 0, 0},
    LoggerEvent{0, {}, logger(4, "silent")}, message(mill, 600, "c"),
};

TEST(Display, PrintsWhatIsAskedForAndSumsItUp) {
    const std::string line_a = "    0.000000 INFO    pump a\n";
    const std::string line_b = "    0.000000 INFO    mill b\n";
    const std::string line_c = "    0.000000 INFO    mill c\n";
    const std::string loss =
        "--- pump is 00000001:00000001 ---\n--- pump#2 is 00000001:00000002 ---\n"
        "--- 5 messages of pump#2 lost: 5 queue full ---\n";
    using Progress = Display::Progress;
    const struct {
        LogQuery query;
        std::optional<std::uint64_t> count;
        Progress progress;
        std::string text;
        std::string summary;
    } cases[] = {
        {{600, {}, {}, {}, {}},
         {},
         Progress::goes_on,
         line_a + line_b + loss + line_c,
         "orvane: 3 messages of 2 applications in 1.5 s, 1 not asked for, 5 lost\n"
         "orvane:   mill    2\n"
         "orvane:   pump    1\n"
         "orvane:   pump#2  0, 5 lost\n"},
        {{}, 1, Progress::complete, line_a, "orvane: 1 message of 1 application in 1.5 s\n"},
        {{{}, {}, {}, targets({"mill", "silent", "valve"}), {}},
         {},
         Progress::goes_on,
         line_b + line_c,
         "orvane: 2 messages of 1 application in 1.5 s, 2 not asked for\n"
         "orvane: no message came from 'silent'\n"
         "orvane: no message came from 'valve'\n"},
        {{{}, {}, {}, {}, targets({"pump#2", "mill"})},
         {},
         Progress::goes_on,
         line_a,
         "orvane: 1 message of 1 application in 1.5 s, 3 not asked for\n"},
    };
    for (const auto& each : cases) {
        DisplayOptions options;
        options.query = each.query;
        options.time = TimeFormat::delta;
        options.count = each.count;
        Display display{options};
        testing::internal::CaptureStdout();
        const Progress progress = display.show(events);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), each.text);
        EXPECT_EQ(progress, each.progress) << each.text;
        EXPECT_EQ(display.summary(1.5, 0), each.summary);
    }
}

TEST(Display, NamesWhoHasCertainlyPublishedInAnothersName) {
    for (const bool is_authenticated : {false, true}) {
        MessageEvent forged = std::get<MessageEvent>(events.front());
        forged.publisher = std::make_shared<Publisher>(Publisher{mill, is_authenticated});
        const DisplayOptions options;
        Display display{options};
        testing::internal::CaptureStdout();
        EXPECT_EQ(display.show({events.front(), forged}), Display::Progress::goes_on);
        const std::string text = testing::internal::GetCapturedStdout();
        EXPECT_EQ(text.find(" pump via mill a\n") != std::string::npos, is_authenticated) << text;
        EXPECT_EQ(display.summary(0, 0), is_authenticated
                                             ? "orvane: 2 messages of 2 applications in 0.0 s\n"
                                               "orvane:   pump           1\n"
                                               "orvane:   pump via mill  1\n"
                                             : "orvane: 2 messages of 1 application in 0.0 s\n");
    }
}

}  // namespace
}  // namespace orvane::tools

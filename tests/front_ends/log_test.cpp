#include "orvane/log.hpp"

#include <sys/wait.h>
#include <unistd.h>

#include <latch>
#include <optional>
#include <stdexcept>
#include <thread>

#include "orvane/syslog.h"
#include "tests/support/faults.hpp"
#include "tests/support/queued_logger.hpp"
#include "tests/support/text.hpp"

namespace orvane::test {
namespace {

/// A value whose text cannot be made.
struct Broken {
    bool throws_exception = true;
};

/// "é", "€", an emoticon: characters of 2, 3 and 4 bytes.
constexpr const char* wide_characters[] = {"\u00e9", "\u20ac", "\U0001F600"};

}  // namespace
}  // namespace orvane::test

template <>
struct ORVANE_FORMATTER::formatter<orvane::test::Broken> {
    constexpr auto parse(auto& context) { return context.begin(); }
    auto format(const orvane::test::Broken& value, auto& context) const {
        if (!value.throws_exception) {
            throw 5;
        }
        throw std::runtime_error("no text");
        return context.out();
    }
};

namespace orvane::test {
namespace {

class Log : public testing::Test {
protected:
    /// Takes the first message out of the queue. @return "level [category] text", "" for none
    std::string pop() {
        const auto message = logger_.pop();
        return message ? std::to_string(message->level) + " [" + message->category + "] " +
                             message->text
                       : "";
    }

    QueuedLogger logger_{64};
};

constexpr Category pump{"pump"};

TEST_F(Log, EachCallHasItsLevelItsCategoryAndItsText) {
    logger_.set_filter_level(QEL_KX_LEVEL_TRACE);
    const std::string text = "oil";
    int expected = 0;
    const auto expect = [&](int level, const char* category) {
        EXPECT_EQ(pop(), std::to_string(level) + " [" + category + "] oil " +
                             std::to_string(++expected) + " 2.5");
    };
#define EXPECT_CALLS(name, NAME, number)                                        \
    orvane::name("{} {} {:.1f}", text, expected + 1, 2.5);                      \
    expect(number, "");                                                         \
    pump.name("{} {} {:.1f}", text, expected + 1, 2.5);                         \
    expect(number, "pump");                                                     \
    ORVANE_##NAME("{} {} {:.1f}", text, expected + 1, 2.5);                     \
    expect(number, "");                                                         \
    ORVANE_##NAME##_IN(pump, "{} {} {:.1f}", text, expected + 1, 2.5);          \
    expect(number, "pump");                                                     \
    ORVANE_##NAME##F("%s %d %.1f", text.c_str(), expected + 1, 2.5);            \
    expect(number, "");                                                         \
    ORVANE_##NAME##F_IN("pump", "%s %d %.1f", text.c_str(), expected + 1, 2.5); \
    expect(number, "pump")
    EXPECT_CALLS(fatal, FATAL, 100);
    EXPECT_CALLS(severe, SEVERE, 200);
    EXPECT_CALLS(error, ERROR, 300);
    EXPECT_CALLS(warning, WARNING, 400);
    EXPECT_CALLS(notice, NOTICE, 500);
    EXPECT_CALLS(info, INFO, 600);
    EXPECT_CALLS(debug, DEBUG, 700);
    EXPECT_CALLS(trace, TRACE, 800);
#undef EXPECT_CALLS
    orvane::log(static_cast<Level>(650), "{}", text);
    EXPECT_EQ(pop(), "650 [] oil");
    orvane::write(Level::info, "100 % {}");
    EXPECT_EQ(pop(), "600 [] 100 % {}");
    pump.write(Level::info, std::string_view{"oil pressure", 3});
    EXPECT_EQ(pop(), "600 [pump] oil");
}

TEST_F(Log, WhatTheFilterStopsIsNotEvaluatedInAMacroAndNotFormattedInACall) {
    int evaluated = 0;
    ORVANE_DEBUG("{}", ++evaluated);
    ORVANE_DEBUG_IN(pump, "{}", ++evaluated);
    ORVANE_DEBUGF("%d", ++evaluated);
    orvane::debug("{}", Broken{});
    EXPECT_EQ(evaluated, 0);
    logger_.set_filter_level(QEL_KX_LEVEL_DEBUG);
    ORVANE_DEBUG("{}", ++evaluated);
    EXPECT_EQ(pop(), "700 [] 1");
#undef ORVANE_ACTIVE_LEVEL
#define ORVANE_ACTIVE_LEVEL QEL_KX_LEVEL_INFO
    ORVANE_DEBUG("{}", ++evaluated);
    ORVANE_DEBUGF("%d", ++evaluated);
    EXPECT_EQ(evaluated, 1);
    ORVANE_INFOF("%d", ++evaluated);
    EXPECT_EQ(pop(), "600 [] 2");
#undef ORVANE_ACTIVE_LEVEL
#define ORVANE_ACTIVE_LEVEL 0x7fffffff
    EXPECT_EQ(pop(), "");
}

TEST_F(Log, ATextIsCutBetweenCharacters) {
    constexpr std::size_t bound = ORVANE_LOG_MESSAGE_BOUND;
    for (const std::string character : wide_characters) {
        for (std::size_t before = 0; before <= character.size(); ++before) {
            const std::string kept(bound - before, 'x');
            const std::string whole = kept + character + "rest";
            const std::string expected =
                "600 [] " + kept + (before == character.size() ? character : "");
            orvane::info("{}", whole);
            EXPECT_EQ(pop(), expected);
            ORVANE_INFOF("%s", whole.c_str());
            EXPECT_EQ(pop(), expected);
            orvane::write(Level::info, whole);
            EXPECT_EQ(pop(), expected);
            const std::string name(ORVANE_LOG_CATEGORY_BOUND - before, 'x');
            const std::string category = name + (before == character.size() ? character : "");
            EXPECT_EQ(Category{name + character + "rest"}.name(), category);
            ORVANE_INFOF_IN((name + character + "rest").c_str(), "text");
            EXPECT_EQ(pop(), "600 [" + category + "] text");
        }
        show_source_location(true);
        const std::string place = " (log_test.cpp:" + std::to_string(__LINE__ + 1) + ")";
        orvane::info("{}", repeated(character, bound));
        show_source_location(false);
        const std::string placed = pop().substr(7);
        const std::size_t end = placed.size() - place.size();
        EXPECT_EQ(placed.substr(end), place);
        EXPECT_LE(placed.size(), bound);
        EXPECT_GT(placed.size() + character.size(), bound);
        EXPECT_EQ(placed.substr(0, end), repeated(character, end / character.size()));
    }
    // Bytes that are no UTF-8 are not looked through for a character's begin.
    orvane::write(Level::info, std::string(bound + 9, '\x80'));
    EXPECT_EQ(pop(), "600 [] " + std::string(bound, '\x80'));
}

TEST_F(Log, ACallThrowsNothingKeepsErrnoAndAllocatesNothing) {
    errno = 77;
    orvane::error("value {}", Broken{});
    EXPECT_EQ(pop(), "300 [] (no text) value {}");
    orvane::error("value {}", Broken{false});
    EXPECT_EQ(pop(), "300 [] (a formatter has failed) value {}");
    const std::string text(100, 'x');
    const Calls heap(heap_allocation);
    const Calls new_calls(new_expression);
    orvane::info("{} {}", text, 2.5);
    ORVANE_INFOF("%s %.1f %ls", text.c_str(), 2.5, L"\xDEAD");
    EXPECT_EQ(heap.count() + new_calls.count(), 0);
    EXPECT_EQ(errno, 77);
    EXPECT_EQ(pop(), "600 [] " + text + " 2.5");
    EXPECT_EQ(pop(), "600 [] %s %.1f %ls") << "a wide character that is none";
}

void log_by_list(int priority, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    vsyslog(priority, format, arguments);
    va_end(arguments);
}

TEST_F(Log, CallsOfSyslogKeepTheirSeverity) {
    logger_.set_filter_level(QEL_KX_LEVEL_TRACE);
    constexpr int levels[] = {100, 100, 200, 300, 400, 500, 600, 700};
    for (int priority = LOG_EMERG; priority <= LOG_DEBUG; ++priority) {
        const std::string expected = std::to_string(levels[priority]) + " [] " + strerror(ENOENT);
        ::syslog(LOG_LOCAL0 | priority, "%s", strerror(ENOENT));
        EXPECT_EQ(pop(), expected);
        errno = ENOENT;
        log_by_list(priority, "%m");
        EXPECT_EQ(pop(), expected);
    }
}

TEST(LogScope, PublishesWhatItWasGivenBeforeItEnds) {
    EXPECT_FALSE(is_enabled(Level::fatal));
    orvane::fatal("nobody");
    const std::string kind(ORVANE_APPLICATION_KIND_BOUND - 1, 'k');
    {
        const Logger logger{{.domain = domain(),
                             .filter_level = Level::debug,
                             .queue_size = 512,
                             .application_kind = kind + "\u00e9",
                             .log_infrastructure_messages = false}};
        EXPECT_EQ(QEL_KX_Orvane_instance->state->applicationKind, kind);
        EXPECT_TRUE(is_enabled(Level::debug));
        EXPECT_FALSE(is_enabled(Level::trace));
        for (int number = 0; number < 500; ++number) {
            orvane::debug("message {}", number);
        }
    }
    EXPECT_EQ(Logger::statistics().published, 500U);
    EXPECT_EQ(QEL_KX_Orvane_isOrvaneRunning(), 0);
    const Logger again{{.domain = domain()}};
    orvane::info("one more");
    EXPECT_TRUE(again.flush(std::chrono::milliseconds::max()));
    EXPECT_EQ(Logger::statistics().published, 1U);
    EXPECT_FALSE(again.wait_for_viewer(std::chrono::milliseconds{-1}));
}

TEST(LogScope, OfTwoThreadsThatStartOneAtTheSameTimeOneSucceeds) {
    for (int round = 0; round < 4; ++round) {
        std::atomic<int> started = 0;
        std::latch both_begin{2};
        std::latch both_have_tried{2};
        const auto start = [&](const char* kind) {
            both_begin.arrive_and_wait();
            std::error_code error;
            const Logger logger{{.domain = domain(), .application_kind = kind}, error};
            if (!error) {
                ++started;
                EXPECT_STREQ(QEL_KX_Orvane_instance->state->applicationKind, kind);
            }
            both_have_tried.arrive_and_wait();
        };
        std::thread other{start, "other"};
        start("one");
        other.join();
        EXPECT_EQ(started, 1);
    }
}

TEST(LogScope, EndsItsOwnLoggerOnly) {
    std::optional<Logger> logger{std::in_place, orvane::Options{.domain = domain()}};
    const pid_t child = fork();
    if (child == 0) {
        const bool runs = logger->is_running() || logger->wait_for_viewer(std::chrono::hours{1});
        logger.reset();
        _exit(runs ? EXIT_FAILURE : EXIT_SUCCESS);
    }
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(logger->is_running());

    QEL_KX_Orvane_finalizeInstance();
    EXPECT_FALSE(logger->is_running());
    EXPECT_FALSE(logger->wait_for_viewer(std::chrono::hours{1}));
    const RunningLogger of_somebody_else;
    logger.reset();
    EXPECT_EQ(QEL_KX_Orvane_isOrvaneRunning(), 1);
}

TEST(LogScope, SaysWhyItDidNotStart) {
    const auto failure = [](const orvane::Options& options) {
        std::pair<std::error_code, std::string> result;
        output_of([&] {
            QEL_KX_Orvane_printMessage("of something else", "earlier", QEL_KX_LEVEL_ERROR);
            try {
                const Logger logger{options};
            } catch (const orvane::Error& error) {
                result = {error.code(), error.what()};
            }
        });
        return result;
    };
    const auto [code, text] = failure({.domain = domain(), .queue_size = 0});
    EXPECT_EQ(code, StartError::refused_option);
    EXPECT_EQ(text, "KX Error: QEL_KX_Options_setQueueSize: Queue Size must be positive");
    {
        const Fault fault("DDS_DomainParticipantFactory_create_participant", 1);
        const auto unlucky = failure({.domain = domain()});
        EXPECT_EQ(unlucky.first, StartError::not_created);
        EXPECT_NE(unlucky.second.find("Unable to create DDSEntities"), std::string::npos)
            << unlucky.second;
        EXPECT_EQ(gQEL_KX_Orvane_currentOptions, nullptr) << "they have been deleted";
    }
    std::error_code error = StartError::not_created;
    const Logger first{{.domain = domain()}, error};
    EXPECT_FALSE(error) << error.message();
    {
        const Logger second{{.domain = domain()}, error};
        EXPECT_EQ(error, StartError::already_running);
        EXPECT_EQ(failure({.domain = domain()}).first, StartError::already_running);
    }
    EXPECT_EQ(QEL_KX_Orvane_isOrvaneRunning(), 1) << "the second has not ended the first";
}

}  // namespace
}  // namespace orvane::test

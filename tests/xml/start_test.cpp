#include <gtest/gtest.h>

#include <string>

#include "tests/core/output.hpp"
#include "tests/core/running_logger.hpp"
#include "tests/support/failing_new.hpp"
#include "tests/support/heap_faults.hpp"
#include "tests/xml/host.hpp"
#include "tests/xml/parsed_config.hpp"

namespace {

using orvane::test::Host;
using orvane::test::KeptVerbosities;
using orvane::test::note_parse_error;
using orvane::test::output_of;
using orvane::test::ParsedConfig;
using orvane::test::with_orvane;

/// Starts, and expects a result and the line that the start itself prints as the last one.
void expect_start(DDS_DomainParticipant* participant, QEL_KX_Options* options, const char* kind,
                  DDS_Boolean result, const std::string& last_line) {
    const std::string printed = output_of([&] {
        EXPECT_EQ(QEL_KX_XMLConfig_startWithXMLConfiguration(participant, options, kind), result);
    });
    EXPECT_TRUE(printed.ends_with(last_line)) << printed;
    EXPECT_EQ(printed.empty(), last_line.empty()) << printed;
}

std::string line(const std::string& message, const char* level = "Error") {
    return std::string("KX ") + level + ": QEL_KX_XMLConfig_startWithXMLConfiguration: " + message +
           "\n";
}

const std::string enabled = "<enabled>true</enabled>";

TEST(Start, DecidesInItsOrder) {
    const ParsedConfig disabled(with_orvane(""));
    const ParsedConfig config(with_orvane(enabled));
    const Host host;
    const KeptVerbosities verbosities;
    expect_start(nullptr, nullptr, "kind", 0, line("no options found in XML configuration"));
    expect_start(nullptr, disabled.options(), "kind", 0, line("invalid DomainParticipant"));
    expect_start(host.participant(), disabled.options(), "kind", 1,
                 line("KX not enabled in XML Options. It won't be created", "Info"));
    EXPECT_EQ(disabled.options()->domain_participant, nullptr);
    EXPECT_EQ(QEL_KX_Orvane_isOrvaneRunning(), 0);

    heap_faults::fail_allocation(1);
    expect_start(host.participant(), config.options(), "kind", 0,
                 line("could not set the application kind"));
    EXPECT_FALSE(heap_faults::was_out_of_reach());

    // An instance that is being created by another thread.
    QEL_KX_Orvane unfinished = {};
    QEL_KX_Orvane_instance = &unfinished;
    expect_start(host.participant(), config.options(), "kind", 0,
                 line("could not set KX options; instance already created"));
    QEL_KX_Orvane_instance = nullptr;

    config.options()->remote_administration_enabled = 0;
    expect_start(host.participant(), config.options(), "kind", 0,
                 line("Orvane could not be started"));
    EXPECT_EQ(QEL_KX_Orvane_isOrvaneRunning(), 0);
}

TEST(Start, RunsTheLoggerWithTheParticipantAndTheOptionsOfTheFile) {
    const ParsedConfig config(
        with_orvane(enabled + "<filter_level>ERROR</filter_level><queue_size>9</queue_size>"));
    const Host host;
    expect_start(host.participant(), config.options(), nullptr, 1, "");
    const QEL_KX_Orvane* logger = QEL_KX_Orvane_getInstance();
    ASSERT_NE(logger, nullptr);
    EXPECT_EQ(logger->options, config.options());
    EXPECT_EQ(logger->filterLevel, QEL_KX_LEVEL_ERROR);
    EXPECT_EQ(logger->messageQueue->maxSize, 9);
    EXPECT_EQ(QEL_KX_DDSEntities_getDomainParticipant(logger->ddsEntities), host.participant());
    EXPECT_EQ(config.options()->application_kind, nullptr);

    const ParsedConfig another(with_orvane(enabled));
    expect_start(host.participant(), another.options(), "kind", 1,
                 line("KX already running. XML Options don't apply", "Info"));
    EXPECT_EQ(another.options()->application_kind, nullptr);
}

TEST(Start, LeavesTheLevelThatAToolHasSetToTheWriter) {
    const ParsedConfig config(with_orvane(enabled));
    const Host host;
    expect_start(host.participant(), config.options(), "pump", 1, "");
    EXPECT_STREQ(config.options()->application_kind, "pump");
    orvane::core::store(QEL_KX_Orvane_getInstance()->filterLevel, QEL_KX_LEVEL_DEBUG);
    EXPECT_NE(config.saved().find("<filter_level>DEBUG</filter_level>"), std::string::npos);
    QEL_KX_Orvane_finalizeInstance();
    EXPECT_NE(config.saved().find("<filter_level>INFO</filter_level>"), std::string::npos);
}

/// What stops a class from being made, when an allocation fails.
std::string refusal_of_class(DDS_XMLParseErrorFunction function, void (*fail_allocation)(int)) {
    const long before = heap_faults::live_blocks();
    const std::string printed = output_of([&] {
        fail_allocation(1);
        EXPECT_EQ(QEL_KX_XMLConfig_createXMLExtensionClass(function), nullptr);
    });
    EXPECT_EQ(heap_faults::live_blocks(), before);
    // The platform may have had something to say before.
    const std::string context = "KX Error: QEL_KX_XMLConfig_createXMLExtensionClass: ";
    const std::size_t at = printed.find(context);
    return at != std::string::npos ? printed.substr(at + context.size()) : "instead " + printed;
}

TEST(ExtensionClass, IsMadeWithItsListenerOrNotAtAll) {
    EXPECT_EQ(refusal_of_class(nullptr, [](int) {}), "invalid log function\n");
    EXPECT_EQ(refusal_of_class(note_parse_error, heap_faults::fail_allocation),
              "could not allocate extension class listener\n");
    EXPECT_EQ(refusal_of_class(note_parse_error, failing_new::fail_allocation),
              "creation of XML extension class failed\n");

    const long before = heap_faults::live_blocks();
    DDS_XMLExtensionClass* made = QEL_KX_XMLConfig_createXMLExtensionClass(note_parse_error);
    ASSERT_NE(made, nullptr);
    QEL_KX_XMLConfig_destroyXMLExtensionClass(made);
    QEL_KX_XMLConfig_destroyXMLExtensionClass(nullptr);
    EXPECT_EQ(heap_faults::live_blocks(), before);
}

}  // namespace

#include "core/shared_field.hpp"
#include "orvane/admin.h"
#include "tests/support/faults.hpp"
#include "tests/support/text.hpp"
#include "tests/xml/parsed_config.hpp"

namespace orvane::test {
namespace {

std::string start_line(const char* message, const char* level = "Error") {
    return line("QEL_KX_XMLConfig_startWithXMLConfiguration", message, level);
}

/// Starts, and expects the result of a failure or success with its line as the last one.
void expect_start(DDS_DomainParticipant* participant, const ParsedConfig* config, const char* kind,
                  DDS_Boolean result, const std::string& last_line) {
    const std::string printed = output_of([&] {
        QEL_KX_Options* options = config != nullptr ? config->options() : nullptr;
        EXPECT_EQ(QEL_KX_XMLConfig_startWithXMLConfiguration(participant, options, kind), result);
    });
    EXPECT_TRUE(printed.ends_with(last_line)) << printed;
    EXPECT_EQ(printed.empty(), last_line.empty()) << printed;
}

const std::string enabled = "<enabled>true</enabled>";

TEST(Start, DecidesInItsOrder) {
    const ParsedConfig disabled(with_orvane(""));
    const ParsedConfig config(with_orvane(enabled));
    const Host host;
    expect_start(nullptr, nullptr, "kind", 0, start_line("no options found in XML configuration"));
    expect_start(nullptr, &disabled, "kind", 0, start_line("invalid DomainParticipant"));
    expect_start(host.participant(), &disabled, "kind", 1,
                 start_line("KX not enabled in XML Options. It won't be created", "Info"));
    EXPECT_EQ(disabled.options()->domain_participant, nullptr);
    EXPECT_EQ(QEL_KX_Orvane_isOrvaneRunning(), 0);

    {
        const Fault fault(heap_allocation, 1);
        expect_start(host.participant(), &config, "kind", 0,
                     start_line("could not set the application kind"));
    }

    // An instance that is being created by another thread.
    QEL_KX_Orvane unfinished = {};
    QEL_KX_Orvane_instance = &unfinished;
    expect_start(host.participant(), &config, "kind", 0,
                 start_line("could not set KX options; instance already created"));
    QEL_KX_Orvane_instance = nullptr;

    config.options()->remote_administration_enabled = 0;
    expect_start(host.participant(), &config, "kind", 0, start_line("Orvane could not be started"));
    EXPECT_EQ(QEL_KX_Orvane_isOrvaneRunning(), 0);
}

TEST(Start, RunsTheLoggerWithTheParticipantAndTheOptionsOfTheFile) {
    const ParsedConfig config(
        with_orvane(enabled + "<filter_level>ERROR</filter_level><queue_size>9</queue_size>"));
    const ParsedConfig another(with_orvane(enabled));
    const Host host;
    expect_start(host.participant(), &config, "pump", 1, "");
    QEL_KX_Orvane* logger = QEL_KX_Orvane_getInstance();
    ASSERT_NE(logger, nullptr);
    EXPECT_EQ(logger->options, config.options());
    EXPECT_EQ(logger->filterLevel, QEL_KX_LEVEL_ERROR);
    EXPECT_EQ(logger->messageQueue->maxSize, 9);
    EXPECT_EQ(QEL_KX_DDSEntities_getDomainParticipant(logger->ddsEntities), host.participant());
    EXPECT_STREQ(config.options()->application_kind, "pump");

    expect_start(host.participant(), &another, "kind", 1,
                 start_line("KX already running. XML Options don't apply", "Info"));
    EXPECT_EQ(another.options()->application_kind, nullptr);

    // While the logger runs, the level that a tool has set is written.
    core::store(logger->filterLevel, QEL_KX_LEVEL_DEBUG);
    const Calls unlocks("QELOsapi_global_unlock");
    EXPECT_NE(config.saved().find("<filter_level>DEBUG</filter_level>"), std::string::npos);
    EXPECT_EQ(unlocks.count(), 1);
    QEL_KX_Orvane_finalizeInstance();
    EXPECT_NE(config.saved().find("<filter_level>ERROR</filter_level>"), std::string::npos);

    expect_start(host.participant(), &another, nullptr, 1, "");
    EXPECT_EQ(another.options()->application_kind, nullptr);
}

TEST(ExtensionClass, IsMadeWithItsListenerOrNotAtAll) {
    EXPECT_EQ(
        output_of([] { EXPECT_EQ(QEL_KX_XMLConfig_createXMLExtensionClass(nullptr), nullptr); }),
        line("QEL_KX_XMLConfig_createXMLExtensionClass", "invalid log function"));
    for (const auto& [allocation, report] :
         {std::pair{heap_allocation, "could not allocate extension class listener"},
          {new_expression, "creation of XML extension class failed"}}) {
        const std::string printed = output_of([&allocation = allocation] {
            sweep(allocation, [] {
                DDS_XMLExtensionClass* made =
                    QEL_KX_XMLConfig_createXMLExtensionClass(note_parse_error);
                QEL_KX_XMLConfig_destroyXMLExtensionClass(made);
                return made != nullptr;
            });
        });
        EXPECT_NE(printed.find(report), std::string::npos) << printed;
    }
}

}  // namespace
}  // namespace orvane::test

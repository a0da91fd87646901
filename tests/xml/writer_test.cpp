#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/text.hpp"
#include "tests/xml/parsed_config.hpp"

namespace {

using orvane::test::as_xml;
using orvane::test::differences;
using orvane::test::output_of;
using orvane::test::ParsedConfig;
using orvane::test::with_orvane;

/// Parses children, saves the document, parses that again and expects the same options.
void expect_written(const std::string& children, const std::string& written) {
    const ParsedConfig config(with_orvane(children));
    EXPECT_EQ(config.saved(), "<dds>\n" + written + "</dds>\n");
    const ParsedConfig again(config.saved());
    EXPECT_FALSE(again.has_failed());
    EXPECT_EQ(differences(*again.options()), differences(*config.options()));
}

TEST(Writer, WritesEverySettingWhereItIsToStandAndNoThreadElementForDefaults) {
    expect_written("", R"(    <orvane>
        <filter_level>INFO</filter_level>
        <enabled>false</enabled>
<echo_to_stdout>false</echo_to_stdout>
<log_infrastructure_messages>true</log_infrastructure_messages>
        <queue_size>128</queue_size>
    </orvane>
)");
    expect_written(
        "<thread><mask>PRIORITY_ENFORCE|STDIO|REALTIME_PRIORITY</mask><priority>-3</priority>"
        "<stack_size>65536</stack_size><cpu_list><element>0</element><element>2</element>"
        "</cpu_list><cpu_rotation>CPU_RR_ROTATION</cpu_rotation></thread>"
        "<filter_level>450</filter_level><enabled>1</enabled><queue_size>7</queue_size>"
        "<echo_to_stdout>yes</echo_to_stdout>"
        "<log_infrastructure_messages>no</log_infrastructure_messages>",
        R"(    <orvane>
        <filter_level>450</filter_level>
        <enabled>true</enabled>
<echo_to_stdout>true</echo_to_stdout>
<log_infrastructure_messages>false</log_infrastructure_messages>
        <thread>
            <mask>THREAD_SETTINGS_STDIO | THREAD_SETTINGS_REALTIME_PRIORITY | )"
        R"(THREAD_SETTINGS_PRIORITY_ENFORCE</mask>
            <priority>-3</priority>
            <stack_size>65536</stack_size>
            <cpu_list>
                <element>0</element>
                <element>2</element>
            </cpu_list>
            <cpu_rotation>THREAD_SETTINGS_CPU_RR_ROTATION</cpu_rotation>
        </thread>
        <queue_size>7</queue_size>
    </orvane>
)");
}

TEST(Writer, StopsInsideTheElementThatItCannotWrite) {
    std::string text;
    const auto append = [](void* to, const char* part, std::size_t length) -> DDS_Boolean {
        static_cast<std::string*>(to)->append(part, length);
        return DDS_BOOLEAN_TRUE;
    };
    QELXMLSaveContext without_options{0, 0, append, &text};
    EXPECT_EQ(output_of([&] { QEL_KX_XMLConfig_save(nullptr, &without_options, nullptr); }),
              "KX Error: QEL_KX_XMLConfig_getKXOptions: invalid XML configuration object\n");
    EXPECT_EQ(text, "<orvane>\n    ");
    EXPECT_EQ(without_options.error, 1);

    const ParsedConfig config(with_orvane(as_xml("thread/mask", "STDIO")));
    constexpr DDS_Long unknown_rotation = 2;
    DDS_ThreadSettings_t& settings = config.options()->thread;
    std::memcpy(&settings.cpu_rotation, &unknown_rotation, sizeof unknown_rotation);
    QELXMLSaveContext of_settings{0, 0, append, &text};
    QEL_KX_XMLConfig_saveThreadSettings("thread", &settings, &of_settings);
    EXPECT_TRUE(text.ends_with("    <cpu_list/>\n")) << text;
    EXPECT_EQ(of_settings.error, 1);
}

}  // namespace

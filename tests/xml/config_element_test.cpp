#include <cstring>
#include <span>

#include "pexa/log.h"
#include "tests/support/faults.hpp"
#include "tests/support/text.hpp"
#include "tests/xml/parsed_config.hpp"
#include "xml/option_table.hpp"

namespace orvane::test {
namespace {

struct Case {
    const char* path;
    std::string text;
    const char* options;
    /// The function that reports the text, and the report; "platform" for a report of its own.
    std::string report{};
};

void expect(const Case& each) {
    SCOPED_TRACE(std::string(each.path) + ": " + each.text);
    const std::string prefix = "3 QEL_KX_XMLConfig_";
    const bool by_platform = each.report == "platform";
    std::string reports = each.report.empty() || by_platform ? "" : prefix + each.report + "\n";
    if (each.report.starts_with("getFilterLevel")) {
        reports += prefix + "onEndElement: invalid filter level string in XML configuration\n";
    }
    const std::string printed = output_of([&] {
        const ParsedConfig config(with_orvane(as_xml(each.path, each.text)));
        EXPECT_EQ(differences(*config.options()), each.options);
        EXPECT_EQ(config.reports(), reports);
        EXPECT_EQ(config.has_failed(), !each.report.empty());
    });
    EXPECT_EQ(printed, each.report.starts_with("getQueueSize")
                           ? line("QEL_KX_Options_setQueueSize", "Queue Size must be positive")
                           : "");
}

/// The platform reports parse errors on standard output when a parse ends.
class Element : public testing::Test {
public:
    Element() { QELLog_setInstrumentationMask(QEL_LOG_MODULE_DDS, 0); }
    ~Element() override {
        QELLog_setInstrumentationMask(QEL_LOG_MODULE_DDS, QEL_LOG_BIT(QEL_LOG_LEVEL_ERROR));
    }
};

TEST_F(Element, StoresTheTextsOfItsChildrenAndReportsARefusedTextWithItsLine) {
    const std::string no_integer = ": integer expected in XML text";
    const std::string out_of_bounds = ": integer out of bounds in XML text";
    const std::string not_positive = ": positive integer expected";
    const std::string level = "getFilterLevelFromString";
    const std::string bad_mask = "getThreadSettingsKindMask: illegal value on thread mask XML tag";
    const std::string negative = level + ": negative integer not allowed for filter level";
    // It fills the buffer of a mask and ends behind a complete name.
    std::string mask = "STDIO  ";
    while (mask.size() < 2047) {
        mask += "|STDIO";
    }
    ASSERT_EQ(mask.size(), 2047U);
    const Case cases[] = {
        {"filter_level", "SILENT", "filter_level=0"},
        {"filter_level", "FATAL", "filter_level=100"},
        {"filter_level", "SEVERE", "filter_level=200"},
        {"filter_level", "ERROR", "filter_level=300"},
        {"filter_level", "WARNING", "filter_level=400"},
        {"filter_level", "NOTICE", "filter_level=500"},
        {"filter_level", "DEBUG", "filter_level=700"},
        {"filter_level", "TRACE", "filter_level=800"},
        {"filter_level", " 450 ", "filter_level=450"},
        {"filter_level", "12abc", "filter_level=12"},
        {"filter_level", "0x20", "filter_level=0"},
        {"filter_level", "warning", "", level + no_integer},
        {"filter_level", "-1", "", negative},
        {"filter_level", "2147483648", "", negative},
        {"filter_level", "100</filter_level><filter_level>200", "filter_level=200"},
        {"enabled", "YES</enabled><enabled>0", ""},
        {"echo_to_stdout", "1", "echo_to_stdout=1"},
        {"log_infrastructure_messages", "no", "log_infrastructure_messages=0"},
        {"log_infrastructure_messages", "maybe", "log_infrastructure_messages=0", "platform"},
        {"queue_size", "0x20", "queue_size=32"},
        {"queue_size", "010 messages", "queue_size=8"},
        {"queue_size", "4294967297", "queue_size=1"},
        {"queue_size", "many", "", "getQueueSize" + no_integer},
        {"queue_size", "0", "", "getQueueSize" + not_positive},
        {"queue_size", "2147483648", "", "getQueueSize" + not_positive},
        {"queue_size", "9223372036854775808", "", "getQueueSize" + out_of_bounds},
        // Not where they belong, or not spelled as they are.
        {"mask", "STDIO", ""},
        {"Enabled", "true", ""},
        {"thread", "<priority>3</priority></thread><priority>4</priority><thread>", "priority=3"},
        {"thread/mask", "FLOATING_POINT | stdio", "mask=3"},
        {"thread/mask", " realtime_priority|PRIORITY_ENFORCE ", "mask=24"},
        {"thread/mask", "DDS_THREAD_SETTINGS_STDIO|thread_settings_realtime_priority", "mask=10"},
        {"thread/mask", "MASK_DEFAULT|DDS_Thread_Settings_Kind_Mask_Default", ""},
        {"thread/mask", "THREAD_SETTINGS_KIND_MASK_DEFAULT | STDIO", "mask=2"},
        {"thread/mask", "   ", ""},
        {"thread/mask", "STDIO</mask><mask>FLOATING_POINT", "mask=1"},
        {"thread/mask", "FLOATING_POINT |", "mask=1", bad_mask},
        {"thread/mask", "THREAD_SETTINGS_MASK_DEFAULT", "", bad_mask},
        {"thread/mask", mask, "mask=2"},
        {"thread/mask", mask + "|FLOATING_POINT", "mask=2", bad_mask},
        {"thread/priority", "-5", "priority=-5"},
        {"thread/priority", "1</priority><priority>min_priority", ""},
        {"thread/priority", "1</priority><priority>DDS_THREAD_PRIORITY_ABOVE_NORMAL", ""},
        {"thread/priority", "DDS_MAX_PRIORITY", "priority=0", "getThreadPriority" + no_integer},
        {"thread/stack_size", "0", "stack_size=0"},
        {"thread/stack_size", "5</stack_size><stack_size>dds_thread_stack_size_default", ""},
        {"thread/stack_size", "5</stack_size><stack_size>-1", "stack_size=5",
         "getThreadStackSize" + not_positive},
        {"thread/stack_size", "STACK_SIZE_DEFAULT", "", "getThreadStackSize" + no_integer},
        // What an earlier number did to errno is no fault of a later one.
        {"thread/priority", "99999999999999999999</priority><stack_size>64</stack_size><priority>7",
         "priority=7 stack_size=64"},
        {"thread/cpu_rotation", "cpu_rr_rotation", "cpu_rotation=1"},
        {"thread/cpu_rotation", "round", "", "getCpuRotation: error getting cpu_rotation"},
        {"thread/cpu_list/element", "0</element><element>2</element><element>0x5",
         "cpu=0 cpu=2 cpu=5"},
        {"thread/cpu_list", "<element>1</element></cpu_list><cpu_list><element>3</element>",
         "cpu=1 cpu=3"},
        {"thread/cpu_list/element", "4</element><element>x</element><cpu>6</cpu><element>7",
         "cpu=4 cpu=0 cpu=7", "addElementToCpuList" + no_integer},
        {"thread/cpu_list/element", "-1", "cpu=0", "addElementToCpuList" + not_positive},
    };
    for (const Case& each : cases) {
        expect(each);
    }
    EXPECT_EQ(
        ParsedConfig(with_orvane("\n\n<thread><stack_size>x\n</stack_size></thread>")).reports(),
        "6 QEL_KX_XMLConfig_getThreadStackSize" + no_integer + "\n");
}

TEST_F(Element, IsFoundWhereverItStandsAndTheFirstOneCounts) {
    const std::string sized = as_xml("orvane/queue_size", "2");
    for (const std::string& document :
         {"<dds><data/>" + as_xml("types/a/b", sized) + "<orvane/></dds>",
          "<dds>" + as_xml("types/a", "") + sized + "</dds>", as_xml("orvane", sized)}) {
        const ParsedConfig config(document);
        ASSERT_NE(config.options(), nullptr) << document;
        EXPECT_EQ(differences(*config.options()), "queue_size=2") << document;
    }
    EXPECT_EQ(ParsedConfig("<dds><types><Orvane/></types></dds>").options(), nullptr);
}

TEST_F(Element, IsMadeAsAWholeOrNotAtAllWhicheverAllocationFails) {
    XMLConfigListener listener = {note_parse_error};
    DDS_XMLContext context = {0, 1, "orvane", nullptr};
    /// @return whether an object was made
    const auto make = [&] {
        DDS_XMLExtensionClass* made =
            DDS_XMLExtensionClass_new("orvane", &listener, nullptr, nullptr, nullptr, nullptr,
                                      QEL_KX_XMLConfig_new, QEL_KX_XMLConfig_delete, nullptr);
        DDS_XMLObject* object = QEL_KX_XMLConfig_new(made, nullptr, nullptr, &context);
        QEL_KX_XMLConfig_delete(object);
        DDS_XMLExtensionClass_delete(made);
        return object != nullptr;
    };
    EXPECT_EQ(output_of([&] { sweep(heap_allocation, make); }),
              line("QEL_KX_XMLConfig_create", "could not allocate XML options object") +
                  line("QEL_KX_XMLConfig_new", "XML object creation failed") +
                  line("QEL_KX_Options_createDefault",
                       "Unable to allocate memory for QEL_KX_Options", "Warning") +
                  line("QEL_KX_XMLConfig_new", "XML object creation failed"));
    // The failure of the platform's part is a parse error.
    EXPECT_EQ(context.error, 1);
}

/// Reads the example of each row, and then the default behind it.
template <typename Record>
void expect_examples(std::span<const xml::Option<Record>> options, const std::string& path) {
    for (const xml::Option<Record>& option : options) {
        const std::string name = path + option.description.name;
        if (option.description.type == xml::ValueType::ThreadSettings) {
            expect_examples(xml::thread_settings(), name + "/");
            continue;
        }
        if (!option.description.has_element()) {
            continue;
        }
        SCOPED_TRACE(name);
        const std::string element = name + (option.description.is_list() ? "/element" : "");
        const std::string example = as_xml(element, option.description.example);
        const ParsedConfig changed(with_orvane(example));
        EXPECT_FALSE(changed.has_failed());
        EXPECT_NE(differences(*changed.options()), "");
        if (option.description.by_default != nullptr) {
            const ParsedConfig back(
                with_orvane(example + as_xml(element, option.description.by_default)));
            EXPECT_FALSE(back.has_failed());
            EXPECT_EQ(differences(*back.options()), "");
        }
    }
}

TEST(OptionTable, HasExamplesThatTheParserTakesAndTheDefaults) {
    expect_examples(xml::options(), "");
}

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
}  // namespace orvane::test

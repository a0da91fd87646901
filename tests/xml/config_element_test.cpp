#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include "pexa/log.h"
#include "tests/core/output.hpp"
#include "tests/support/heap_faults.hpp"
#include "tests/xml/parsed_config.hpp"

namespace {

using orvane::test::as_xml;
using orvane::test::differences;
using orvane::test::note_parse_error;
using orvane::test::output_of;
using orvane::test::ParsedConfig;
using orvane::test::with_orvane;

struct Case {
    const char* path;
    std::string text;
    const char* options;
    /// What the converter reports, by which function.
    std::string report{};
};

std::string reports_of(const Case& each) {
    const std::string prefix = "3 QEL_KX_XMLConfig_";
    std::string reports = each.report.empty() ? "" : prefix + each.report + "\n";
    if (!each.report.empty() && std::string("filter_level") == each.path) {
        reports += prefix + "onEndElement: invalid filter level string in XML configuration\n";
    }
    return reports;
}

void expect(const Case& each) {
    SCOPED_TRACE(std::string(each.path) + ": " + each.text);
    const std::string printed = output_of([&] {
        const ParsedConfig config(with_orvane(as_xml(each.path, each.text)));
        ASSERT_NE(config.options(), nullptr);
        EXPECT_EQ(differences(*config.options()), each.options);
        EXPECT_EQ(config.reports(), reports_of(each));
        EXPECT_EQ(config.has_failed(), !each.report.empty());
    });
    EXPECT_EQ(printed, each.report.starts_with("getQueueSize")
                           ? "KX Error: QEL_KX_Options_setQueueSize: Queue Size must be positive\n"
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

TEST_F(Element, StoresWhatItsChildrenSayAndReportsWhatItRefusesWithTheLine) {
    const std::string no_integer = ": integer expected in XML text";
    const std::string out_of_bounds = ": integer out of bounds in XML text";
    const std::string not_positive = ": positive integer expected";
    const std::string level = "getFilterLevelFromString";
    const std::string negative = level + ": negative integer not allowed for filter level";
    const std::string bad_mask = "getThreadSettingsKindMask: illegal value on thread mask XML tag";
    const Case cases[] = {
        {"filter_level", "WARNING", "filter_level=400"},
        {"filter_level", "SILENT", "filter_level=0"},
        {"filter_level", " 450 ", "filter_level=450"},
        {"filter_level", "12abc", "filter_level=12"},
        {"filter_level", "0x20", "filter_level=0"},
        {"filter_level", "warning", "", level + no_integer},
        {"filter_level", "", "", level + no_integer},
        {"filter_level", "-1", "", negative},
        {"filter_level", "2147483648", "", negative},
        {"filter_level", "100</filter_level><filter_level>200", "filter_level=200"},
        {"enabled", "true", "enabled=1"},
        {"enabled", "YES</enabled><enabled>0", ""},
        {"echo_to_stdout", "1", "echo_to_stdout=1"},
        {"log_infrastructure_messages", "no", "log_infrastructure_messages=0"},
        {"queue_size", "512", "queue_size=512"},
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
        {"thread/mask", "DDS_STDIO", "", bad_mask},
        {"thread/priority", "-5", "priority=-5"},
        {"thread/priority", "12;", "priority=12"},
        {"thread/priority", "1</priority><priority>min_priority", ""},
        {"thread/priority", "1</priority><priority>DDS_THREAD_PRIORITY_ABOVE_NORMAL", ""},
        {"thread/priority", "HIGH", "priority=0", "getThreadPriority" + no_integer},
        {"thread/priority", "DDS_MAX_PRIORITY", "priority=0", "getThreadPriority" + no_integer},
        {"thread/stack_size", "0x4000", "stack_size=16384"},
        {"thread/stack_size", "0", "stack_size=0"},
        {"thread/stack_size", "5</stack_size><stack_size>dds_thread_stack_size_default", ""},
        {"thread/stack_size", "5</stack_size><stack_size>-1", "stack_size=5",
         "getThreadStackSize" + not_positive},
        {"thread/stack_size", "STACK_SIZE_DEFAULT", "", "getThreadStackSize" + no_integer},
        // What an earlier number did to errno is no fault of a later one.
        {"thread/priority", "99999999999999999999</priority><stack_size>64</stack_size><priority>7",
         "priority=7 stack_size=64"},
        {"thread/cpu_rotation", "cpu_rr_rotation", "cpu_rotation=1"},
        {"thread/cpu_rotation", "DDS_THREAD_SETTINGS_CPU_NO_ROTATION", ""},
        {"thread/cpu_rotation", "round", "", "getCpuRotation: error getting cpu_rotation"},
        {"thread/cpu_list/element", "0</element><element>2</element><element>0x5",
         "cpu_list=0,2,5"},
        {"thread/cpu_list", "<element>1</element></cpu_list><cpu_list><element>3</element>",
         "cpu_list=1,3"},
        {"thread/cpu_list/element", "4</element><element>x</element><cpu>6</cpu><element>7",
         "cpu_list=4,0,7", "addElementToCpuList" + no_integer},
        {"thread/cpu_list/element", "-1", "cpu_list=0", "addElementToCpuList" + not_positive},
    };
    for (const Case& each : cases) {
        expect(each);
    }
    EXPECT_EQ(
        ParsedConfig(with_orvane("\n\n<thread><stack_size>x\n</stack_size></thread>")).reports(),
        "6 QEL_KX_XMLConfig_getThreadStackSize" + no_integer + "\n");
}

TEST_F(Element, TakesATruthValueThatIsNoneForFalseAndFailsTheFile) {
    const ParsedConfig config(with_orvane(as_xml("log_infrastructure_messages", "maybe")));
    EXPECT_EQ(differences(*config.options()), "log_infrastructure_messages=0");
    EXPECT_TRUE(config.has_failed());
}

TEST_F(Element, RefusesAMaskThatIsLongerThanItsBuffer) {
    // The buffer ends behind a complete name.
    std::string mask = "STDIO  ";
    while (mask.size() < 2047) {
        mask += "|STDIO";
    }
    ASSERT_EQ(mask.size(), 2047U);
    expect({"thread/mask", mask, "mask=2"});
    expect({"thread/mask", mask + "|FLOATING_POINT", "mask=2",
            "getThreadSettingsKindMask: illegal value on thread mask XML tag"});
}

TEST_F(Element, ReadsTheRangeErrorThatTheCallerOfAConversionLeaves) {
    DDS_XMLContext context = {0, 9, "queue_size", nullptr};
    DDS_Long size = 5;
    errno = ERANGE;
    QEL_KX_XMLConfig_getQueueSize(&size, "12", &context, note_parse_error);
    EXPECT_EQ(size, 5);
    EXPECT_EQ(context.error, 1);
    errno = 0;
    QEL_KX_XMLConfig_getQueueSize(&size, "12", &context, note_parse_error);
    EXPECT_EQ(size, 12);
}

TEST_F(Element, ReportsACpuForWhichThereIsNoMemory) {
    DDS_XMLContext context = {0, 9, "element", nullptr};
    DDS_LongSeq cpus = {};
    heap_faults::fail_allocation(1);
    QEL_KX_XMLConfig_addElementToThreadCpuList(&cpus, "1", &context, note_parse_error);
    EXPECT_FALSE(heap_faults::was_out_of_reach());
    EXPECT_EQ(context.error, 1);
    EXPECT_EQ(DDS_LongSeq_get_length(&cpus), 0);
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

/// What is said when an object is to be made, and then to end an element, with this user data.
std::string refusal_with(XMLConfigListener* listener) {
    QEL_KX_XMLConfig config = {};
    config.listener = listener;
    config.currentElement = QEL_KX_XML_ELEMENT_QUEUE_SIZE;
    DDS_XMLExtensionClass* extension_class =
        DDS_XMLExtensionClass_new("orvane", listener, nullptr, nullptr, nullptr, nullptr,
                                  QEL_KX_XMLConfig_new, QEL_KX_XMLConfig_delete, nullptr);
    const long before = heap_faults::live_blocks();
    std::string printed = output_of([&] {
        DDS_XMLContext context = {0, 1, "orvane", nullptr};
        EXPECT_EQ(QEL_KX_XMLConfig_new(extension_class, nullptr, nullptr, &context), nullptr);
        QEL_KX_XMLConfig_onEndElement(&config.object, "queue_size", "7", &context);
    });
    EXPECT_EQ(heap_faults::live_blocks(), before);
    DDS_XMLExtensionClass_delete(extension_class);
    return printed;
}

TEST_F(Element, IsNeitherMadeNorReadWithoutAListenerAndItsFunction) {
    EXPECT_EQ(refusal_with(nullptr),
              "KX Error: QEL_KX_XMLConfig_new: could not get extension listener\n"
              "KX Error: QEL_KX_XMLConfig_onEndElement: invalid extension listener\n");
    XMLConfigListener listener = {nullptr};
    EXPECT_EQ(
        refusal_with(&listener),
        "KX Error: QEL_KX_XMLConfig_new: invalid parsing error log function\n"
        "KX Error: QEL_KX_XMLConfig_onEndElement: invalid log parse error function pointer\n");
}

TEST_F(Element, IsMadeAsAWholeOrNotAtAllWhicheverAllocationFails) {
    XMLConfigListener listener = {note_parse_error};
    DDS_XMLExtensionClass* extension_class =
        DDS_XMLExtensionClass_new("orvane", &listener, nullptr, nullptr, nullptr, nullptr,
                                  QEL_KX_XMLConfig_new, QEL_KX_XMLConfig_delete, nullptr);
    QELBool parse_errors = 0;
    const auto make = [&] {
        DDS_XMLContext context = {0, 1, "orvane", nullptr};
        DDS_XMLObject* object = QEL_KX_XMLConfig_new(extension_class, nullptr, nullptr, &context);
        parse_errors += context.error;
        QEL_KX_XMLConfig_delete(object);
        return object != nullptr;
    };
    EXPECT_EQ(output_of([&] { heap_faults::sweep(make); }),
              "KX Error: QEL_KX_XMLConfig_create: could not allocate XML options object\n"
              "KX Error: QEL_KX_XMLConfig_new: XML object creation failed\n"
              "KX Warning: QEL_KX_Options_createDefault: Unable to allocate memory for "
              "QEL_KX_Options\n"
              "KX Error: QEL_KX_XMLConfig_new: XML object creation failed\n");
    // What the platform has no memory for is a parse error.
    EXPECT_EQ(parse_errors, 1);
    DDS_XMLExtensionClass_delete(extension_class);
}

}  // namespace

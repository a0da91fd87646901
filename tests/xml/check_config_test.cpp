#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/integration/programs.hpp"

namespace orvane::tests {
namespace {

const std::string source = ORVANE_SOURCE_DIR;

/// A document that is removed at the end.
struct Document {
    explicit Document(const std::string& text, const std::string& given_name = "checked.xml")
        : name(given_name) {
        std::ofstream(name) << text;
    }
    ~Document() { std::filesystem::remove(name); }
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    const std::string name;
};

/// Runs the tool. @return whether it ends as told and says these lines and no others.
testing::AssertionResult says(const Words& arguments, const std::string& ending,
                              const std::vector<std::string>& lines) {
    ChildProcess tool{tool_command(arguments)};
    const bool as_told = tool.wait_for_end() == ending && tool.output().error == lines;
    return as_told ? testing::AssertionSuccess()
                   : testing::AssertionFailure() << "not " << ending << ":\n"
                                                 << tool.transcript();
}

TEST(CheckConfig, SaysWhatIsRefusedOrHardlyMeantAndWhatIsExpected) {
    const std::string ignored = ": the text behind the number is ignored, expected ";
    const std::string cut = ": only 32 bits of the number are kept, expected ";
    const std::string no_integer = "integer expected in XML text";
    const std::string level =
        "SILENT, FATAL, SEVERE, ERROR, WARNING, NOTICE, INFO, DEBUG, TRACE, or a decimal number "
        "from 0 on";
    const std::string child =
        "filter_level, enabled, echo_to_stdout, log_infrastructure_messages, thread, queue_size";
    const std::string priority =
        "a decimal number, or THREAD_PRIORITY_DEFAULT; the same is meant by THREAD_PRIORITY_HIGH, "
        "THREAD_PRIORITY_ABOVE_NORMAL, THREAD_PRIORITY_NORMAL, THREAD_PRIORITY_BELOW_NORMAL, "
        "THREAD_PRIORITY_LOW, MAX_PRIORITY, NORM_PRIORITY, MIN_PRIORITY";
    const std::string second =
        "has no effect, as the element of line 1 counts, expected one element in a file";
    const struct {
        std::string content;  ///< of `orvane`, or a whole document
        std::string finding;  ///< empty for a good configuration
    } rows[] = {
        {"<queue_size>0X10</queue_size><filter_level>0600</filter_level>", ""},
        {"<thread><priority>dds_thread_priority_default</priority><mask/></thread>", ""},
        {"<thread><mask/></thread><thread><stack_size>007</stack_size></thread>", ""},
        {"<queue_size>6OO</queue_size>",
         "queue_size: warning: \"6OO\" becomes 6" + ignored + "1 to 2147483647"},
        {"<queue_size>1,000</queue_size>",
         "queue_size: warning: \"1,000\" becomes 1" + ignored + "1 to 2147483647"},
        {"<queue_size>4294967297</queue_size>",
         "queue_size: warning: \"4294967297\" becomes 1" + cut + "1 to 2147483647"},
        {"<queue_size>010</queue_size>",
         "queue_size: warning: \"010\" becomes 8: a number behind 0 is octal, expected 1 to "
         "2147483647"},
        {"<filter_level>0x258</filter_level>",
         "filter_level: warning: \"0x258\" becomes 0" + ignored + level},
        {"<thread><priority>-99999999999999999999</priority></thread>",
         "priority: warning: \"-99999999999999999999\" becomes 0" + cut + priority},
        {"<thread><priority>MAX_PRIORITY</priority></thread>",
         "priority: warning: \"MAX_PRIORITY\" means THREAD_PRIORITY_DEFAULT, expected a number for "
         "another priority"},
        {"<filter_level>6</filter_level>",
         "filter_level: warning: \"6\" stops every level that has a name, expected " + level},
        {"<thread><cpu_list><element>2-3</element></cpu_list></thread>",
         "element: warning: \"2-3\" becomes 2" + ignored + "0 to 2147483647"},
        {"<thread><cpu_list>1,2</cpu_list></thread>",
         "cpu_list: warning: the text \"1,2\" has no effect, expected nothing but elements: "
         "element"},
        {"<thread><cpu_list/><cpu_list/></thread>",
         "cpu_list: warning: adds to the list of line 1, expected one list"},
        {"<enabled>0</enabled>",
         "enabled: warning: replaces the value of line 1, expected one value"},
        {"<queue_size xml:id='q' unit='k'>2</queue_size>",
         "queue_size: warning: the attribute unit has no effect, expected none"},
        {"hello",
         "orvane: warning: the text \"hello\" has no effect, expected nothing but elements: " +
             child},
        {"</orvane><orvane>", "orvane: warning: " + second},
        {"<dds><orvane/></dds>",
         "orvane: warning: starts no logger, expected an element enabled with true or false"},
        {"<dds>hello<orvane><enabled>0</enabled></orvane></dds>",
         "dds: warning: the text \"hello\" has no effect, expected nothing but elements"},
        {"<queue_size>" + std::string(70, 'x') + "</queue_size>",
         "queue_size: " + no_integer + ": found \"" + std::string(60, 'x') +
             "...\", expected 1 to 2147483647"},
        {"<filter_level>info</filter_level>",
         "filter_level: " + no_integer +
             ", invalid filter level string in XML configuration: found \"info\", expected " +
             level},
        {"<thread><priority>high</priority></thread>",
         "priority: " + no_integer + ": found \"high\", expected " + priority},
        {"<thread><mask>STDIO|</mask></thread>",
         "mask: illegal value on thread mask XML tag: found \"STDIO|\", expected MASK_DEFAULT, or "
         "FLOATING_POINT, STDIO, REALTIME_PRIORITY, PRIORITY_ENFORCE with bars between them"},
        {"<thread><stack_size>-1</stack_size></thread>",
         "stack_size: positive integer expected: found \"-1\", expected 0 to 2147483647, or "
         "THREAD_STACK_SIZE_DEFAULT"},
        {"<thread><cpu_rotation>round</cpu_rotation></thread>",
         "cpu_rotation: error getting cpu_rotation: found \"round\", expected CPU_NO_ROTATION or "
         "CPU_RR_ROTATION"},
        {"<echo_to_stdout>on</echo_to_stdout>",
         "echo_to_stdout: found \"on\", expected true, false, yes, no, 1 or 0"},
        {"<level/>", "level: unknown element without effect, expected " + child},
        {"<thread><cpu_list><cpu/></cpu_list></thread>",
         "cpu: unknown element without effect, expected element"},
        {"<queue_size><size/>5</queue_size>",
         "size: element without effect, expected nothing but text in queue_size"},
        {"<mask>STDIO</mask>",
         "mask: in the wrong place, and without effect, expected directly inside thread"},
        {"<Thread><queue_size>5</queue_size></Thread>",
         "Thread: unknown element without effect, expected " + child +
             "\nqueue_size: in the wrong place, and has an effect nevertheless, expected directly "
             "inside orvane"},
        {"<thread><thread/><mask/></thread>",
         "thread: in the wrong place, and has an effect nevertheless, expected directly inside "
         "orvane\nmask: without effect, because an element in the wrong place stands before it"},
        {"</orvan>",
         "orvane: not well-formed: mismatched tag </orvan>, expected </orvane> for the element of "
         "line 1"},
    };
    for (const auto& row : rows) {
        const std::string begin =
            row.content.starts_with("<dds>") ? "" : "<dds><orvane><enabled>1</enabled>";
        const std::string end = begin.empty() ? "" : "</orvane></dds>";
        const Document file(begin + row.content + end);
        std::vector<std::string> lines;
        std::istringstream findings(row.finding);
        for (std::string line; std::getline(findings, line);) {
            lines.push_back(file.name + ":1: " + line);
        }
        const bool is_refused =
            !lines.empty() && row.finding.find("warning: ") == std::string::npos;
        EXPECT_TRUE(says({"check-config", file.name}, is_refused ? "exit 1" : "exit 0", lines))
            << row.content;
    }
}

TEST(CheckConfig, NamesEveryProblemWithItsPlaceAndPrintsWhatIsInForce) {
    const std::string file = source + "/tests/xml/faulty/configuration.xml";
    ChildProcess tool{tool_command({"check-config", file})};
    EXPECT_EQ(tool.wait_for_end(), "exit 1");
    const std::vector<std::string> problems = {
        "3: filter_lvl: unknown element without effect, expected ",
        "4: queue_size: integer expected in XML text: found \"none\", expected ",
        "5: enabled: found \"maybe\", expected true, false, yes, no, 1 or 0",
        "6: filter_level: integer expected in XML text, invalid filter level string in XML ",
        "7: filter_level: warning: replaces the value of line 6",
        "8: priority: in the wrong place, and without effect, ",
        "10: mask: illegal value on thread mask XML tag: found \"STDIO |\", expected ",
        "13: cpu: unknown element without effect, expected element",
        "15: echo_to_stdout: in the wrong place, and has an effect nevertheless, ",
        "19: qos_profile: unknown base faulty::nobody",
        "22: kind: expected KEEP_LAST_HISTORY_QOS KEEP_ALL_HISTORY_QOS",
        "27: logger: unknown element, expected ",
    };
    const std::vector<std::string> lines = tool.output().error;
    ASSERT_EQ(lines.size(), problems.size()) << tool.transcript();
    for (std::size_t i = 0; i < lines.size(); ++i) {
        EXPECT_TRUE(lines[i].starts_with(file + ":" + problems[i])) << lines[i];
    }
    const std::vector<std::string> in_force = tool.output().out;
    for (const char* line :
         {"        <enabled>false</enabled>", "<echo_to_stdout>true</echo_to_stdout>",
          "            <mask>THREAD_SETTINGS_STDIO</mask>"}) {
        EXPECT_EQ(std::ranges::count(in_force, line), 1) << line;
    }
    // What is printed is a configuration that means the same.
    std::string printed;
    for (const std::string& line : in_force) {
        printed += line + "\n";
    }
    const Document again(printed);
    ChildProcess second{tool_command({"check-config", again.name})};
    EXPECT_EQ(second.wait_for_end(), "exit 0") << second.transcript();
    EXPECT_EQ(second.output().out, in_force);
    EXPECT_TRUE(second.output().error.empty()) << second.transcript();
}

TEST(CheckConfig, EndsByWhatItIsGiven) {
    std::string warnings = "<dds><orvane><enabled>1</enabled>\n";
    for (int i = 0; i < 103; ++i) {
        warnings += "<thread a=''/>\n";
    }
    const Document many(warnings + "<x/></orvane>" + "</dds>");
    const Document doubtful("<dds><orvane/></dds>", "doubtful.xml");
    const Document huge("<dds><orvane><queue_size>2147483647</queue_size></orvane></dds>",
                        "huge.xml");
    const struct {
        Words arguments;
        std::string ending;
        std::string says;
    } cases[] = {
        {{source + "/examples/xml/journal.xml", "--strict"},
         "exit 0",
         "<stack_size>262144</stack_size>"},
        {{source + "/tests/xml/dds_xml.xml", "--strict"}, "exit 0", "<enabled>true</enabled>"},
        {{doubtful.name}, "exit 0", ":1: orvane: warning: starts no logger"},
        {{doubtful.name, "--strict"}, "exit 1", ":1: orvane: warning: starts no logger"},
        {{doubtful.name}, "exit 0", "<!-- The queue takes at least "},
        {{huge.name}, "exit 1", "huge.xml:1: queue_size: the queue takes at least "},
        {{many.name}, "exit 1", ":105: x: unknown element without effect"},
        {{many.name}, "exit 1", many.name + ": 4 more problems\n"},
        {{"/no/such\x1b/file.xml"},
         "exit 1",
         "/no/such\\x1b/file.xml:0: the file cannot be read: No such file or directory"},
        {{source}, "exit 1", ":0: the file cannot be read: Is a directory"},
        {{source + "/README.md"}, "exit 1", "/README.md:1: "},
        {{source + "/docs/orvane.xsd"}, "exit 1", "expected dds as the root"},
        {{"/dev/null"}, "exit 1", "/dev/null is a pipe or a device, expected a regular file"},
    };
    for (const auto& each : cases) {
        Words arguments = each.arguments;
        arguments.insert(arguments.begin(), "check-config");
        ChildProcess tool{tool_command(arguments)};
        EXPECT_EQ(tool.wait_for_end(), each.ending) << tool.transcript();
        EXPECT_NE(tool.transcript().find(each.says), std::string::npos) << tool.transcript();
        std::vector<std::string> errors = tool.output().error;
        std::ranges::sort(errors);
        EXPECT_EQ(std::ranges::adjacent_find(errors), errors.end()) << "each problem once";
    }
}

}  // namespace
}  // namespace orvane::tests

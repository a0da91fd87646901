#include <algorithm>

#include "tests/integration/programs.hpp"

namespace orvane::tests {
namespace {

const std::string source = ORVANE_SOURCE_DIR;

TEST(CheckConfig, NamesEveryProblemWithItsPlaceAndPrintsWhatIsInForce) {
    const std::string file = source + "/tests/xml/faulty/configuration.xml";
    ChildProcess tool{tool_command({"check-config", file})};
    EXPECT_EQ(tool.wait_for_end(), "exit 1");
    const std::string no_effect = "unknown element, or in the wrong place: it has no effect";
    const std::vector<std::string> problems = {
        "3: filter_lvl: " + no_effect,
        "4: queue_size: integer expected in XML text",
        "5: enabled: found \"maybe\", expected true, false, yes, no, 1 or 0",
        "6: filter_level: integer expected in XML text",
        "6: filter_level: invalid filter level string in XML configuration",
        "8: priority: " + no_effect,
        "10: mask: illegal value on thread mask XML tag",
        "13: cpu: " + no_effect,
        "15: echo_to_stdout: in the wrong place, and has an effect nevertheless",
        "19: qos_profile: unknown base faulty::nobody",
        "22: kind: expected KEEP_LAST_HISTORY_QOS KEEP_ALL_HISTORY_QOS",
        "27: logger: unknown element",
    };
    const std::vector<std::string> lines = tool.output().error;
    ASSERT_EQ(lines.size(), problems.size()) << tool.transcript();
    for (std::size_t i = 0; i < lines.size(); ++i) {
        EXPECT_TRUE(lines[i].starts_with(file + ":" + problems[i])) << lines[i];
    }
    const std::vector<std::string>& in_force = tool.output().out;
    for (const char* line :
         {"    <enabled>false</enabled>", "<echo_to_stdout>true</echo_to_stdout>",
          "        <mask>THREAD_SETTINGS_STDIO</mask>"}) {
        EXPECT_EQ(std::ranges::count(in_force, line), 1) << line;
    }
}

TEST(CheckConfig, EndsByWhatItIsGiven) {
    const struct {
        Words arguments;
        std::string ending;
        std::string says;
    } cases[] = {
        {{"check-config", source + "/examples/xml/journal.xml"},
         "exit 0",
         "<stack_size>262144</stack_size>"},
        {{"check-config", "/no/such\x1b/file.xml"},
         "exit 1",
         "/no/such\\x1b/file.xml:0: the file cannot be read: No such file or directory"},
        {{"check-config", source + "/README.md"}, "exit 1", "/README.md:1: "},
        {{"check-config", source + "/docs/orvane.xsd"}, "exit 1", "expected dds as the root"},
        {{"check-config", "/dev/null"}, "exit 1", "/dev/null is not a regular file"},
    };
    for (const auto& each : cases) {
        ChildProcess tool{tool_command(each.arguments)};
        EXPECT_EQ(tool.wait_for_end(), each.ending) << tool.transcript();
        EXPECT_NE(tool.transcript().find(each.says), std::string::npos) << tool.transcript();
        std::vector<std::string> errors = tool.output().error;
        std::ranges::sort(errors);
        EXPECT_EQ(std::ranges::adjacent_find(errors), errors.end()) << "each problem once";
    }
}

TEST(Example, LogsItsInputAsItsFileSays) {
    Viewer viewer;
    ChildProcess journal{{ORVANE_JOURNAL, ORVANE_SOURCE_DIR "/examples/xml/journal.xml", domain()}};
    // The messages that are logged before the viewer is there arrive too.
    std::vector<std::string> lines;
    for (int number = 0; number < 500; ++number) {
        lines.push_back("line " + std::to_string(number));
        ASSERT_TRUE(journal.send_line(lines.back())) << journal.transcript();
    }
    EXPECT_TRUE(viewer.wait_for(lines.size(), "journal")) << journal.transcript();
    journal.close_input();
    EXPECT_EQ(journal.wait_for_end(), "exit 0") << journal.transcript();
    EXPECT_EQ(journal.output().out, (std::vector<std::string>{"logged 500, discarded 0"}));
    std::vector<std::string> viewed;
    for (const ViewedMessage& message : viewer.messages("journal")) {
        viewed.push_back(message.text);
    }
    EXPECT_EQ(viewed, lines);
}

}  // namespace
}  // namespace orvane::tests

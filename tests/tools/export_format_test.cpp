#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <thread>

#include "tests/tools/sample_events.hpp"
#include "tools/export/journal_entry.hpp"
#include "tools/export/journal_sink.hpp"
#include "tools/export/otlp_answer.hpp"
#include "tools/export/otlp_request.hpp"
#include "tools/export/severity.hpp"

namespace orvane::tools {
namespace {

using Json = nlohmann::json;

TEST(ExportFormatTest, LevelsHaveTheSeveritiesOfOtherSystems) {
    const struct {
        std::int32_t level;
        int otlp;
        int syslog;
    } cases[] = {{-1, 21, 2},  {100, 21, 2}, {101, 18, 2}, {200, 18, 2},
                 {300, 17, 3}, {400, 13, 4}, {500, 10, 5}, {600, 9, 6},
                 {650, 5, 7},  {700, 5, 7},  {800, 1, 7},  {9999, 1, 7}};
    for (const auto& each : cases) {
        EXPECT_EQ(severity_of(each.level).otlp, each.otlp) << each.level;
        EXPECT_EQ(severity_of(each.level).syslog, each.syslog) << each.level;
    }
}

std::vector<ExportRecord> sample_records() {
    std::vector<ExportRecord> list;
    for (RecordedEvent& event : sample_events()) {
        list.push_back({std::move(event), noon + 5});
    }
    return list;
}

TEST(ExportFormatTest, ALoggerIsAResourceAndACategoryAScope) {
    const Json request = Json::parse(otlp_request(sample_records()));
    // Nobody, the one of whom only the ids are known, the pump, and another one with its HOST:APP.
    ASSERT_EQ(request["resourceLogs"].size(), 4U);
    EXPECT_EQ(request["resourceLogs"][1]["resource"], Json::parse(R"({"attributes":[
        {"key":"service.name","value":{"stringValue":"unknown_service"}},
        {"key":"service.instance.id","value":{"stringValue":"00000000:ffffffff"}}]})"));
    const Json& pump = request["resourceLogs"][2];
    EXPECT_EQ(pump["resource"], Json::parse(R"({"attributes":[
        {"key":"service.name","value":{"stringValue":"pump"}},
        {"key":"service.instance.id","value":{"stringValue":"0a141e28:0000c350"}},
        {"key":"host.name","value":{"stringValue":"boat"}},
        {"key":"process.pid","value":{"intValue":"4711"}},
        {"key":"process.executable.name","value":{"stringValue":"pumpd"}}]})"));
    ASSERT_EQ(pump["scopeLogs"].size(), 2U);
    EXPECT_EQ(pump["scopeLogs"][0]["scope"]["name"], "hydraulics");
    EXPECT_EQ(pump["scopeLogs"][0]["logRecords"][0], Json::parse(R"({
        "timeUnixNano":"1769860800000000001","observedTimeUnixNano":"1769860800000000005",
        "severityNumber":13,"severityText":"WARNING","body":{"stringValue":"pressure high"},
        "attributes":[{"key":"orvane.level","value":{"intValue":"400"}}]})"));
    const Json& other = request["resourceLogs"][3];
    EXPECT_EQ(other["resource"]["attributes"][2], Json::parse(R"(
        {"key":"orvane.id","value":{"stringValue":"0a141e28:0000c350:ffffffff"}})"));
    EXPECT_EQ(other["scopeLogs"][0]["logRecords"][0]["attributes"], Json::parse(R"([
        {"key":"orvane.level","value":{"intValue":"400"}},
        {"key":"orvane.publisher","value":{"stringValue":"planner"}},
        {"key":"orvane.publisher.id","value":{"stringValue":"00000003:00000002:00000001"}}])"));
    const Json& odd = pump["scopeLogs"][0]["logRecords"][2];
    EXPECT_EQ(odd["timeUnixNano"], "0");
    EXPECT_EQ(odd["body"]["stringValue"], std::string("\xEF\xBF\xBD\0 a \"quoted\"\n\u00fc", 19));
    const Json& loss = pump["scopeLogs"][1]["logRecords"][1];
    EXPECT_EQ(loss["attributes"][1], Json::parse(R"(
        {"key":"orvane.event","value":{"stringValue":"loss"}})"));
    EXPECT_EQ(loss["attributes"][3]["value"]["intValue"], "9223372036854775807");
    const Json& changed = pump["scopeLogs"][1]["logRecords"][2];
    EXPECT_EQ(
        changed["body"]["stringValue"].get<std::string>().find(
            "pump#2 changed: state OPERATIONAL -> SHUTTING_DOWN, filter level INFO -> SILENT"),
        0U);
}

TEST(ExportFormatTest, AnswersOfACollectorSayWhatToDo) {
    constexpr std::int64_t now = noon + 1;  // 2026-01-31 12:00:00 UTC
    using Milliseconds = std::optional<std::chrono::milliseconds>;
    const struct {
        HttpAnswer answer;
        std::size_t done;
        std::size_t refused = 0;
        Milliseconds pause = {};
        const char* problem = "";
    } cases[] = {
        {{200, "", "{}"}, 9},
        {{202, "", "no JSON"}, 9},
        {{200, "", R"({"partialSuccess":{"errorMessage":"a hint"}})"}, 9},
        {{200, "", R"({"partialSuccess":{"rejectedLogRecords":"2","errorMessage":"old"}})"},
         9,
         2,
         {},
         "records rejected: old"},
        {{200, "", R"({"partialSuccess":{"rejectedLogRecords":99}})"},
         9,
         9,
         {},
         "records rejected: "},
        {{200, "", R"({"partialSuccess":[1]})"}, 9},
        {{400, "", R"({"code":3,"message":"bad"})"}, 9, 9, {}, "answers 400: bad"},
        {{500, "7", "[]"}, 9, 9, {}, "answers 500"},
        {{301, "", ""}, 9, 9, {}, "answers 301"},
        {{429, "7", ""}, 0, 0, Milliseconds{7000}, "answers 429"},
        {{502, "", ""}, 0, 0, {}, "answers 502"},
        {{503, "Sat, 31 Jan 2026 12:01:00 GMT", ""}, 0, 0, Milliseconds{60'000}, "answers 503"},
        {{503, "Saturday, 31-Jan-26 12:01:00 GMT", ""}, 0, 0, Milliseconds{60'000}, "answers 503"},
        {{504, "Sat Jan 31 12:01:00 2026", ""}, 0, 0, Milliseconds{60'000}, "answers 504"},
        {{503, "Fri, 30 Jan 2026 12:01:00 GMT", ""}, 0, 0, Milliseconds{0}, "answers 503"},
        {{503, "99999999999", ""}, 0, 0, Milliseconds{3'600'000}, "answers 503"},
        {{503, "soon", ""}, 0, 0, {}, "answers 503"},
    };
    for (const auto& each : cases) {
        const Delivery delivery = delivery_of(each.answer, 9, now);
        const std::string name =
            std::to_string(each.answer.status) + each.answer.body + each.answer.retry_after;
        EXPECT_EQ(delivery.done, each.done) << name;
        EXPECT_EQ(delivery.refused, each.refused) << name;
        EXPECT_EQ(delivery.pause, each.pause) << name;
        EXPECT_EQ(delivery.problem, each.problem) << name;
    }
}

TEST(ExportFormatTest, AJournalEntryHasFieldsWhateverIsInTheTexts) {
    MessageEvent event = message_event(noon, "a\nb\xff");
    event.record.level = 650;
    const std::string expected = std::string("MESSAGE\n\6\0\0\0\0\0\0\0a\nb\xEF\xBF\xBD\n", 23) +
                                 "PRIORITY=7\nSYSLOG_IDENTIFIER=pump\n"
                                 "ORVANE_TIME=2026-01-31T12:00:00.000000000Z\n"
                                 "ORVANE_LEVEL=650\nORVANE_LEVEL_NAME=650\n"
                                 "ORVANE_CATEGORY=hydraulics\n"
                                 "SYSLOG_PID=4711\nORVANE_APP=0a141e28:0000c350\n"
                                 "ORVANE_KIND=pump\nORVANE_HOST=boat\nORVANE_PROCESS=pumpd\n";
    EXPECT_EQ(journal_entry(event), expected);
    const std::string forged = journal_entry(forged_message());
    EXPECT_NE(forged.find("ORVANE_ID=0a141e28:0000c350:ffffffff\n"), std::string::npos) << forged;
    EXPECT_TRUE(
        forged.ends_with("ORVANE_PUBLISHER=planner\n"
                         "ORVANE_PUBLISHER_ID=00000003:00000002:00000001\n"))
        << forged;
    EXPECT_EQ(journal_entry(RecordingGap{noon, 7}),
              "MESSAGE=7 records given up by orvane export\nPRIORITY=4\nSYSLOG_IDENTIFIER=orvane\n"
              "ORVANE_TIME=2026-01-31T12:00:00.000000000Z\nORVANE_LEVEL=400\n"
              "ORVANE_LEVEL_NAME=WARNING\nORVANE_EVENT=gap\nORVANE_GIVEN_UP=7\n");
    const std::string loss = journal_entry(LossEvent{noon, {}, 1, 2, 3, 4});
    EXPECT_NE(loss.find("ORVANE_LOST=10\nORVANE_QUEUE_FULL=1\nORVANE_NO_MEMORY=2\n"
                        "ORVANE_DISCARDED=3\nORVANE_ON_THE_WAY=4\nORVANE_APP=00000000:00000000\n"),
              std::string::npos)
        << loss;
}

/// A journal that can go and come back.
class Journal {
public:
    explicit Journal(std::string path) : path_(std::move(path)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path_.copy(static_cast<char*>(address.sun_path), sizeof address.sun_path - 1);
        socket_ = socket(AF_UNIX, SOCK_DGRAM, 0);
        EXPECT_EQ(bind(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    }
    ~Journal() {
        close(socket_);
        std::filesystem::remove(path_);
    }
    /// @return bytes of the next entry
    ssize_t read() const {
        std::string bytes(1U << 16U, '\0');
        return recv(socket_, bytes.data(), bytes.size(), 0);
    }

private:
    std::string path_;
    int socket_;
};

TEST(ExportFormatTest, AJournalThatIsFullOrComesBackGetsTheRest) {
    std::string folder = testing::TempDir() + "journal.XXXXXX";
    ASSERT_NE(mkdtemp(folder.data()), nullptr);
    const std::string path = folder + "/socket";
    const auto sink = make_journal_sink(path);
    // The longest that can come.
    MessageEvent longest = message_event(noon, std::string(4096, '\xff'));
    longest.record.category = std::string(512, '\xff');
    const std::vector<ExportRecord> records(2000, {longest, noon});
    EXPECT_EQ(sink->send(records).problem, "No such file or directory");
    std::optional<Journal> journal{path};
    Delivery delivery = sink->send(records);
    EXPECT_EQ(delivery.problem, "takes nothing for 2 s");
    const std::size_t sent = delivery.done;
    EXPECT_GT(sent, 0U);
    ASSERT_LT(sent, records.size());
    EXPECT_EQ(delivery.refused, 0U);
    // Room comes while it waits.
    std::thread reader([&] {
        for (std::size_t i = 0; i < 2 * sent; ++i) {
            EXPECT_GT(journal->read(), 4096 * 3);
        }
    });
    EXPECT_EQ(sink->send(std::span{records}.first(sent)).done, sent);
    reader.join();
    journal.reset();
    EXPECT_EQ(sink->send(records).problem, "Connection refused");
    journal.emplace(path);
    EXPECT_EQ(sink->send(std::span{records}.first(sent)).done, sent);
    sink->interrupt();
    EXPECT_EQ(sink->send(records).done, 0U);
    journal.reset();
    std::filesystem::remove(folder);
}

}  // namespace
}  // namespace orvane::tools

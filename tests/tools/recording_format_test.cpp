#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

#include "tests/tools/decode_pieces.hpp"
#include "tests/tools/sample_events.hpp"
#include "tools/recording/crc32.hpp"
#include "tools/recording/event_encoder.hpp"
#include "tools/recording/mcap_records.hpp"
#include "tools/text/json_event.hpp"
#include "tools/text/time_text.hpp"

namespace orvane::tools {
namespace {

constexpr RecordingFormat both_formats[] = {RecordingFormat::json_lines, RecordingFormat::mcap};

struct File {
    std::string bytes;
    std::vector<std::size_t> block_ends;
};

/// A file with a block for each two events.
File file_of(const std::vector<RecordedEvent>& events, RecordingFormat format) {
    const auto encoder = EventEncoder::make(format);
    File file{encoder->head(), {}};
    encoder->begin_file();
    for (std::size_t i = 0; i < events.size(); ++i) {
        encoder->add(events[i]);
        if (i % 2 == 1 || i + 1 == events.size()) {
            file.bytes += encoder->block();
            encoder->block_is_written();
            file.block_ends.push_back(file.bytes.size());
        }
    }
    file.bytes += encoder->end();
    return file;
}

struct Contents {
    std::vector<std::string> events;
    std::vector<Damage> damages;
};

Contents read(std::string_view bytes, RecordingFormat format, std::size_t piece = 1000) {
    struct Take {
        Contents& contents;
        void operator()(const RecordedEvent& event) const {
            contents.events.push_back(json_line(event));
        }
        void operator()(const Damage& damage) const { contents.damages.push_back(damage); }
    };
    Contents contents;
    decode_pieces(bytes, format, piece, Take{contents});
    return contents;
}

TEST(Crc32, IsThatOfZipWhereverTheBytesAreCut) {
    constexpr std::string_view bytes = "123456789123456789";
    for (std::size_t cut = 0; cut <= bytes.size(); ++cut) {
        EXPECT_EQ(crc32(bytes.substr(cut), crc32(bytes.substr(0, cut))), 0x4B837AE4U) << cut;
    }
}

TEST(JsonLine, HoldsAllOfAnEvent) {
    const std::string logger =
        R"("app":"0a141e28:0000c350","host_id":169090600,"app_id":50000,"kind":"pump","number":2,)"
        R"("host":"boat","process":"pumpd","pid":4711,)";
    const std::string settings =
        R"("filter_level":0,"filter_level_name":"SILENT","domain":-7,"verbosities":)"
        R"({"platform":"ERROR","communication":"ERROR","database":"ERROR","entities":"ERROR",)"
        R"("api":"STATUS_ALL"},"print_format":"MAXIMAL")";
    const std::vector<RecordedEvent> events = sample_events();
    EXPECT_EQ(json_line(events[1]),
              R"({"type":"message","time":"2026-01-31T12:00:00.000000001Z","level":400,)"
              R"("level_name":"WARNING",)" +
                  logger + R"("category":"hydraulics","message":"pressure high"})" + "\n");
    EXPECT_EQ(json_line(events[5]),
              R"({"type":"loss","time":"2026-01-31T12:00:00.000000000Z",)" + logger +
                  R"("lost":18446744073709551615,"queue_full":18446744073709551609,)"
                  R"("no_memory":1,"discarded":2,"on_the_way":3})"
                  "\n");
    EXPECT_EQ(json_line(events[7]),
              R"({"type":"logger","time":"2026-01-31T12:00:00.000000003Z","event":"gone",)" +
                  logger + R"("state":"SHUTTING_DOWN",)" + settings + "}\n");
    EXPECT_EQ(json_line(events[8]), R"({"type":"gap","time":"2026-01-31T12:00:00.000000004Z",)"
                                    R"("events":18446744073709551615})"
                                    "\n");
    EXPECT_EQ(foxglove_json(events[1]),
              R"({"timestamp":{"sec":1769860800,"nsec":1},"level":3,"message":"pressure high",)"
              R"("name":"pump#2 hydraulics","file":"","line":0,"type":"message",)"
              R"("time":"2026-01-31T12:00:00.000000001Z","orvane_level":400,)"
              R"("level_name":"WARNING",)" +
                  logger + R"("category":"hydraulics"})");
    const std::string forged = foxglove_json(forged_message());
    for (const char* members :
         {R"("name":"pump#2 via planner hydraulics",)",
          R"("app_id":50000,"instance_id":4294967295,"kind":"pump","number":2,)",
          R"("publisher":{"app":"00000003:00000002","host_id":3,"app_id":2,"instance_id":1,)"
          R"("kind":"planner","host":"","process":"","pid":7,"authenticated":true}})"}) {
        EXPECT_NE(forged.find(members), std::string::npos) << members << '\n' << forged;
    }
}

TEST(Time, IsReadAsItIsWritten) {
    for (const std::int64_t time :
         {std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max(),
          std::int64_t{0}, std::int64_t{-1}, noon}) {
        EXPECT_EQ(parse_time(json_time(time)), time) << json_time(time);
    }
    EXPECT_EQ(parse_time("2026-01-31T12:00:00Z"), noon);
    EXPECT_EQ(parse_time("2026-01-31 13:30:00.5+01:30"), noon + 500'000'000);
    EXPECT_EQ(parse_time("2026-01-31T10:00:00.000000001-02:00"), noon + 1);
    for (const char* text :
         {"", "2026-01-31T12:00:00", "2026-01-31", "2026-02-29T12:00:00Z", "2026-13-01T12:00:00Z",
          "2026-01-31T24:00:00Z", "2026-01-31T12:00:00.Z", "2026-01-31T12:00:00.1234567890Z",
          "2026-01-31T12:00:00Z ", "2262-04-11T23:47:16.854775808Z",
          "1677-09-21T00:12:43.145224191Z", "+026-01-31T12:00:00Z"}) {
        EXPECT_EQ(parse_time(text), std::nullopt) << text;
    }
}

TEST(Moments, AreReadInTheFormsInWhichTimesArePrintedOrBehindTheBegin) {
    for (const char* zone : {"UTC", "UTC-5:30"}) {
        setenv("TZ", zone, 1);
        tzset();
        for (const bool utc : {false, true}) {
            const auto read = parse_moment(display_time(noon + 500'000'000, utc));
            ASSERT_TRUE(read) << zone << utc;
            EXPECT_EQ(read->at(0), noon + 500'000'000) << zone << utc;
        }
    }
    unsetenv("TZ");
    tzset();
    EXPECT_EQ(parse_moment("+2m").value().at(noon), noon + 120'000'000'000);
    EXPECT_EQ(parse_moment("+2m").value().at(std::numeric_limits<std::int64_t>::max() - 1),
              std::numeric_limits<std::int64_t>::max());
    for (const char* text :
         {"", "+", "+0", "5", "12:00:00", "2026-01-31 12:00:00X", "2026-02-30 12:00:00"}) {
        EXPECT_FALSE(parse_moment(text)) << text;
    }
}

TEST(Recording, GivesBackWhatWasWritten) {
    const std::vector<RecordedEvent> events = sample_events();
    for (const RecordingFormat format : both_formats) {
        const File file = file_of(events, format);
        for (const std::size_t piece : {std::size_t{1}, std::size_t{1000}, file.bytes.size()}) {
            const Contents contents = read(file.bytes, format, piece);
            EXPECT_EQ(contents.events, lines_of(events));
            EXPECT_TRUE(contents.damages.empty()) << contents.damages[0].text;
        }
    }
}

TEST(Recording, ThatIsCutAnywhereGivesAllThatIsWholeAndSaysWhereItEnds) {
    const std::vector<RecordedEvent> events{message_event(noon, "first"), RecordingGap{noon, 1},
                                            message_event(noon, "third")};
    const std::vector<std::string> lines = lines_of(events);
    for (const RecordingFormat format : both_formats) {
        const File file = file_of(events, format);
        const std::size_t data_end =
            format == RecordingFormat::mcap ? file.block_ends.back() + mcap_prefix_size : 0;
        for (std::size_t size = 1; size < file.bytes.size(); ++size) {
            const Contents contents = read(std::string_view{file.bytes}.substr(0, size), format);
            // Of lines, the last one may be without its newline.
            std::size_t whole = 0;
            for (std::size_t end = 0; whole < lines.size(); ++whole) {
                end = format == RecordingFormat::mcap ? file.block_ends[whole / 2]
                                                      : end + lines[whole].size();
                if (size + (format == RecordingFormat::mcap ? 0 : 1) < end) {
                    break;
                }
            }
            // A chunk is whole before its indexes are.
            ASSERT_GE(contents.events.size(), whole) << size;
            ASSERT_TRUE(std::equal(contents.events.begin(), contents.events.end(), lines.begin()));
            if (format == RecordingFormat::mcap) {
                ASSERT_EQ(contents.damages.size(), size < data_end ? 1U : 0U) << size;
            }
        }
    }
}

TEST(Recording, OfLinesTellsWhichLineIsDamagedAndGoesOn) {
    const std::string good = json_line(message_event(noon, "whole"));
    const struct {
        std::string line;
        const char* says;
    } cases[] = {
        {"{\"type\":\"message\"", "expected a JSON object"},
        {"[]", "expected a JSON object"},
        {"{}", "no member \"type\", expected one"},
        {R"({"type":"note"})", "member \"type\": expected message, loss, logger or gap"},
        {R"({"type":"gap","time":"noon","events":1})",
         "member \"time\": expected a time as in RFC 3339, from 1677 to 2262"},
        {R"({"type":"gap","time":"2026-01-31T12:00:00Z","events":-1})",
         "member \"events\": expected a number from 0 to 18446744073709551615"},
        {R"({"type":"gap","time":"2026-01-31T12:00:00Z","events":1.5})",
         "member \"events\": expected a number from 0 to 18446744073709551615"},
        {R"({"type":"loss","time":"2026-01-31T12:00:00Z","host_id":4294967296})",
         "member \"host_id\": expected a number from 0 to 4294967295"},
        {R"({"type":"gap","time":7,"events":1})", "member \"time\": expected a text"},
        {std::string(largest_json_event, '[') + ']', "expected a line of at most 262144 bytes"},
        {std::string(largest_json_event, '['), "expected a JSON object"},
    };
    for (const auto& each : cases) {
        const Contents contents =
            read(good + each.line + "\n \r\n" + good, RecordingFormat::json_lines);
        EXPECT_EQ(contents.events, (std::vector<std::string>{good, good})) << each.says;
        ASSERT_EQ(contents.damages.size(), 1U) << each.says;
        EXPECT_EQ(contents.damages[0].position, 2U);
        EXPECT_EQ(contents.damages[0].text, each.says);
    }
}

TEST(Recording, InMcapPassesOverADamagedChunk) {
    const std::vector<RecordedEvent> events(4, message_event(noon, "whole"));
    const File file = file_of(events, RecordingFormat::mcap);
    const std::size_t first_chunk = file_of({}, RecordingFormat::mcap).bytes.find('\x0F');
    ASSERT_EQ(file.bytes[first_chunk], '\x06');
    const struct {
        const char* what;
        std::size_t offset;
        char byte;
        const char* says;
    } cases[] = {
        {"size of the records", 9 + 16 + 4, 1, "a chunk of 4294"},
        {"size of the records", 9 + 16, 0, "a damaged chunk, expected a frame of Zstandard"},
        {"checksum", 9 + 24, 0, "a damaged chunk: its checksum is"},
        {"compression", 9 + 32, 'l', "a chunk in the compression lstd, expected zstd or none"},
        {"size of the compression", 9 + 31, 1, "a chunk without all of its members"},
        {"frame", 9 + 44 + 10, 0, "a damaged chunk"},
    };
    for (const auto& each : cases) {
        std::string damaged = file.bytes;
        damaged[first_chunk + each.offset] = each.byte;
        const Contents contents = read(damaged, RecordingFormat::mcap);
        EXPECT_EQ(contents.events.size(), 2U) << each.what;
        ASSERT_EQ(contents.damages.size(), 1U) << each.what;
        EXPECT_EQ(contents.damages[0].position, first_chunk) << each.what;
        EXPECT_EQ(contents.damages[0].text.find(each.says), 0U) << contents.damages[0].text;
    }
}

TEST(Recording, InMcapHasNothingFromRecordsOfOthers) {
    std::string bytes{mcap_magic};
    const auto add_channel = [&](std::uint16_t id, std::string_view topic) {
        std::string content;
        append_number(content, id);
        append_number(content, std::uint16_t{0});
        append_text(content, topic);
        append_text(content, "json");
        append_text(content, "");
        append_record(bytes, McapOpcode::channel, content);
    };
    const auto add_message = [&](std::uint16_t channel, const std::string& text) {
        std::string content;
        append_number(content, channel);
        content.append(20, '\0');
        append_record(bytes, McapOpcode::message, content + text);
    };
    const RecordedEvent event = message_event(noon, "ours");
    add_channel(7, "qel/orvane/log");
    add_channel(8, "/camera");
    append_record(bytes, static_cast<McapOpcode>(0x09), "an attachment");
    add_message(8, foxglove_json(event));
    add_message(9, foxglove_json(event));
    add_message(7, foxglove_json(event));
    add_message(7, "{}");
    append_record(bytes, McapOpcode::data_end, "");
    add_message(7, foxglove_json(event));
    const Contents contents = read(bytes, RecordingFormat::mcap);
    EXPECT_EQ(contents.events, lines_of({event}));
    ASSERT_EQ(contents.damages.size(), 1U);
    EXPECT_EQ(contents.damages[0].text, "a message: no member \"type\", expected one");
}

}  // namespace
}  // namespace orvane::tools

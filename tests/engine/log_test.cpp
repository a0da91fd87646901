#include <gtest/gtest.h>

#include "tests/engine/lines.hpp"
#include "tests/engine/peer.hpp"

namespace pexa::engine {
namespace {

TEST(Log, ReportsARefusedPayloadAsAWarning) {
    Lines lines;
    const Node node;
    const EntityId reader = node.reader();
    Peer peer;
    peer.ask("writer " + topic_of_this_test() + " 0");
    ASSERT_EQ(peer.ask("corrupt 1"), "0");
    ASSERT_EQ(peer.ask("write 2 1"), "0");
    EXPECT_EQ(take_some(reader, 1).size(), 1U);
    EXPECT_TRUE(lines.await_line(LogCategory::warning, topic_of_this_test()));
}

TEST(Log, DropsReportsThatAreNotInTheMask) {
    Lines lines(log_bit(LogCategory::fatal));
    const Node node;
    Qos inconsistent;
    inconsistent.history = {HistoryKind::keep_last, -1};
    EXPECT_FALSE(create_reader(node.subscriber, node.topic, inconsistent));
    for (const LogCategory report : {LogCategory::error, LogCategory::warning, LogCategory::info}) {
        EXPECT_EQ(lines.count(report), 0);
    }
}

TEST(Log, TracesARunningDomainWhileTheMaskSaysSo) {
    const LogMask reports = log_mask();
    Lines lines;
    const Node node;
    set_log_mask(reports | log_bit(LogCategory::discovery));
    ASSERT_GT(node.reader(), 0);
    EXPECT_TRUE(lines.await_line(LogCategory::discovery, "READER"));
    EXPECT_EQ(lines.count(LogCategory::traffic), 0);

    set_log_mask(reports);
    lines.clear();
    ASSERT_GT(node.reader(), 0);
    EXPECT_EQ(lines.count(LogCategory::discovery), 0);
}

TEST(Log, TracesADomainThatStartsLater) {
    Lines lines(log_mask() | log_bit(LogCategory::trace));
    const Node node;
    const EntityId writer = node.writer();
    ASSERT_EQ(write_note(writer, 1, "traced"), Status::ok);
    EXPECT_TRUE(lines.await_line(LogCategory::trace, "test::Note"));
}

}  // namespace
}  // namespace pexa::engine

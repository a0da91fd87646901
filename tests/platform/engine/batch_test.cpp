#include <gtest/gtest.h>

#include <ctime>

#include "tests/platform/engine/note_node.hpp"
#include "tests/support/faults.hpp"

namespace pexa::engine {
namespace {

/// Waits until the clock by which batches grow old has moved on.
void await_tick() {
    const auto tick = [] {
        timespec now{};
        clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
        return std::pair(now.tv_sec, now.tv_nsec);
    };
    for (const auto start = tick(); tick() == start;) {
    }
}

TEST(Batch, IsSentBeforeTheHistoryWouldDropASample) {
    const Node node;
    const EntityId writer = node.writer({HistoryKind::keep_last, 3}, true);
    const orvane::test::Calls flushes("dds_write_flush");
    for (int sample = 0; sample < 9; ++sample) {
        ASSERT_EQ(write_note(writer, "text"), Status::ok);
    }
    EXPECT_GE(flushes.count(), 3);
}

TEST(Batch, IsSentBeforeAnythingThatMayWait) {
    const Node node;
    const EntityId writer = node.writer({HistoryKind::keep_all}, true);
    ASSERT_EQ(write_note(writer, "first"), Status::ok);
    const orvane::test::Calls flushes("dds_write_flush");
    await_tick();
    ASSERT_EQ(write_note(writer, "second"), Status::ok);
    EXPECT_EQ(flushes.count(), 1);
    EXPECT_EQ(wait_for_acknowledgments(writer, patience), Status::ok);
    EXPECT_EQ(flushes.count(), 2);
    ASSERT_EQ(write_note(node.writer({HistoryKind::keep_all}, false), "alone"), Status::ok);
    EXPECT_EQ(flushes.count(), 2) << "of a writer that does not batch";
}

}  // namespace
}  // namespace pexa::engine

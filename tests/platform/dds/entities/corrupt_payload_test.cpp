#include <gtest/gtest.h>

#include "tests/platform/dds/entities/foreign_writer.hpp"
#include "tests/platform/dds/entities/probe_node.hpp"
#include "tests/support/reports.hpp"

namespace {

using Bytes = std::vector<std::byte>;

Bytes with_byte(Bytes payload, std::size_t position, int value) {
    payload[position] = static_cast<std::byte>(value);
    return payload;
}

TEST(CorruptPayloads, AreDroppedAndTheNextSampleComesThrough) {
    const ProbeNode node;
    DDS_DataReader* reader = node.reader();
    const ForeignWriter foreign(topic_of_this_test());
    ASSERT_TRUE(foreign.await_reader());
    const Bytes good = encoded_probe({1, 2, "text"});
    std::vector<Bytes> corrupt = {
        with_byte(good, 1, 4),
        with_byte(good, 12, 6),
        with_byte(good, 15, 0x80),
        with_byte(good, good.size() - 1, 'x'),
        encoded_probe({1, undecodable_value}),
    };
    for (std::size_t length = 4; length < good.size(); ++length) {
        corrupt.emplace_back(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(length));
    }
    DDS_Long value = 100;
    for (const Bytes& payload : corrupt) {
        foreign.send(1, payload);
        foreign.send(1, encoded_probe({1, ++value}));
        EXPECT_EQ(summary(await_samples(reader, 1)), "1:" + std::to_string(value));
    }
}

TEST(CorruptPayloads, AKeyThatCannotBeDecodedDisposesNothing) {
    const ProbeNode node;
    DDS_DataReader* reader = node.reader();
    const ForeignWriter foreign(topic_of_this_test());
    ASSERT_TRUE(foreign.await_reader());
    const Bytes sample = encoded_probe({1, 2});
    const std::span<const std::byte> key(sample.data(), 8);
    foreign.send(1, sample);
    foreign.send(1, key.first(6), pexa::engine::WriteKind::dispose);
    EXPECT_EQ(summary(await_samples(reader, 1)), "1:2");
    foreign.send(1, key, pexa::engine::WriteKind::dispose);
    const std::vector<Received> disposed = await_samples(reader, 1);
    ASSERT_EQ(summary(disposed), "1-");
    EXPECT_EQ(disposed[0].info.instance_state, DDS_NOT_ALIVE_DISPOSED_INSTANCE_STATE);
    EXPECT_EQ(disposed[0].info.disposed_generation_count, 0);
}

TEST(CorruptPayloads, ASampleThatStopsBeingDecodableIsSkippedByEveryFormOfReading) {
    const ProbeNode node;
    DDS_DataWriter* writer = node.writer();
    DDS_DataReader* reader = node.reader();
    const auto write_three = [&] {
        for (const DDS_Long value : {1, 2, 3}) {
            ASSERT_EQ(write(writer, {1, value}), DDS_RETCODE_OK);
        }
    };
    refuse_value(2);
    Reports reports;
    const std::string skipped = ":samples that cannot be decoded were skipped";

    write_three();
    EXPECT_EQ(summary(receive(reader)), "1:1 1:3");
    EXPECT_EQ(reports.take(),
              std::vector<std::string>{"DDS_DataReader_read_or_take_untypedI" + skipped});

    write_three();
    ProbeSeq sequence(3);
    ASSERT_EQ(sequence.receive(reader, take_anything), DDS_RETCODE_OK);
    EXPECT_EQ(summary(sequence.content()), "1:1 1:3");

    write_three();
    Probe probe;
    DDS_SampleInfo info{};
    for (const DDS_Long value : {1, 3}) {
        ASSERT_EQ(DDS_DataReader_read_or_take_next_sample_untypedI(reader, &probe, &info, 1),
                  DDS_RETCODE_OK);
        EXPECT_EQ(probe.value, value);
    }

    ASSERT_EQ(write(writer, {1, 2}), DDS_RETCODE_OK);
    ProbeSeq nothing;
    EXPECT_EQ(nothing.receive(reader, take_anything), DDS_RETCODE_NO_DATA);
    refuse_value(undecodable_value);
}

}  // namespace

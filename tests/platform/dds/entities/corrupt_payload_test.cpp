#include <set>

#include <gtest/gtest.h>

#include "tests/platform/dds/entities/foreign_writer.hpp"
#include "tests/platform/dds/entities/probe_node.hpp"

namespace {

using orvane::test::Bytes;

class CorruptPayloads : public testing::Test {
protected:
    CorruptPayloads() { EXPECT_TRUE(await_writer(reader_)); }

    const ProbeNode node_;
    const ForeignWriter foreign_{topic_of_this_test(), "Probe"};
    DDS_DataReader* reader_ = node_.reader();
};

TEST_F(CorruptPayloads, AreDroppedAndTheNextSampleComesThrough) {
    const Bytes good = encoded_probe(Probe(1, 2, "text"));
    std::vector<Bytes> corrupt = {good, encoded_probe(Probe(1, undecodable_value))};
    corrupt[0][1] = 4;
    // A payload that ends between two members, or after the last one, is complete.
    for (std::size_t length = 7; length + 8 < good.size(); length += 4) {
        corrupt.emplace_back(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(length));
    }
    DDS_Long value = 100;
    for (const Bytes& payload : corrupt) {
        foreign_.send(payload, hash_of_probe(1));
        foreign_.send(encoded_probe(Probe(1, ++value)), hash_of_probe(1));
        EXPECT_EQ(summary(await_samples(reader_, 1)), "1:" + std::to_string(value));
    }
}

TEST_F(CorruptPayloads, AKeyThatCannotBeDecodedDisposesNothing) {
    const Bytes key = encoded_key(1);
    const Bytes part(key.begin(), key.begin() + 6);
    foreign_.send(encoded_probe(Probe(1, 2)), hash_of_probe(1));
    foreign_.send(part, hash_of_probe(1), pexa::engine::WriteKind::dispose);
    EXPECT_EQ(summary(await_samples(reader_, 1)), "1:2");
    foreign_.send(key, hash_of_probe(1), pexa::engine::WriteKind::dispose);
    const std::vector<Received> disposed = await_samples(reader_, 1);
    ASSERT_EQ(summary(disposed), "1-");
    EXPECT_EQ(disposed[0].info.instance_state, DDS_NOT_ALIVE_DISPOSED_INSTANCE_STATE);
    EXPECT_EQ(disposed[0].info.disposed_generation_count, 0);
}

TEST_F(CorruptPayloads, ASampleThatStopsBeingDecodableIsSkippedByEveryFormOfReading) {
    DDS_DataWriter* writer = node_.writer();
    const auto write_three = [&] {
        for (const DDS_Long value : {1, 2, 3}) {
            const Probe probe(1, value);
            const DDS_WriteParams_t at_value = {DDS_HANDLE_NIL, {value, 0}};
            ASSERT_EQ(DDS_DataWriter_write_untypedI(writer, &probe, &at_value), ok);
        }
    };
    const DDS_Long before = undecodable_value.exchange(2);
    orvane::test::Reports reports;
    write_three();
    const std::vector<Received> samples = receive(reader_);
    ASSERT_EQ(summary(samples), "1:1 1:3");
    EXPECT_EQ(samples[1].info.source_timestamp.sec, 3) << "each has its own info";
    EXPECT_EQ(reports.take(),
              std::vector<std::string>{"DDS_DataReader_read_or_take_untypedI:"
                                       "samples that cannot be decoded were skipped"});
    std::set<void*> lent;
    for (int round = 0; round < 6; ++round) {
        write_three();
        ProbeSeq loan;
        ASSERT_EQ(loan.receive(reader_), ok);
        lent.insert(loan.data.loanedSamples, loan.data.loanedSamples + loan.data.count);
        ASSERT_EQ(loan.return_loan(reader_), ok);
    }
    EXPECT_LE(lent.size(), 3U) << "what was skipped is lent again";
    write_three();
    ProbeSeq copies(3);
    ASSERT_EQ(copies.receive(reader_), ok);
    EXPECT_EQ(summary(copies.content()), "1:1 1:3");

    write_three();
    Probe probe;
    DDS_SampleInfo info{};
    for (const DDS_Long value : {1, 3}) {
        ASSERT_EQ(DDS_DataReader_read_or_take_next_sample_untypedI(reader_, &probe, &info, 1), ok);
        EXPECT_EQ(probe.value(), value);
    }
    ASSERT_EQ(write(writer, 1, 2), ok);
    EXPECT_EQ(ProbeSeq().receive(reader_), no_data);
    undecodable_value = before;
}

}  // namespace

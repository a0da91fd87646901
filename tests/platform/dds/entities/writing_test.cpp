#include <algorithm>
#include <ctime>

#include <gtest/gtest.h>

#include "platform/dds/interface/value_conversion.hpp"
#include "tests/platform/dds/entities/probe_node.hpp"
#include "tests/support/faults.hpp"

namespace {

TEST(Writing, ASampleArrivesWithItsMembersHandlesAndTimestamp) {
    const ProbeNode node;
    DDS_DataWriter* writer = node.writer();
    DDS_DataReader* reader = node.reader();
    const Probe probe(7, 70, "seven");
    const DDS_WriteParams_t given = {DDS_HANDLE_NIL, {1'700'000'000, 123'456'789}};
    const DDS_Time_t before = pexa::dds::to_time(pexa::dds::now());
    ASSERT_EQ(DDS_DataWriter_write_untypedI(writer, &probe, &given), ok);
    ASSERT_EQ(write(writer, 7, 71), ok);
    const std::vector<Received> samples = await_samples(reader, 2);
    ASSERT_EQ(summary(samples), "7:70 7:71");
    const DDS_SampleInfo& info = samples[0].info;
    EXPECT_STREQ(samples[0].probe.message, "seven");
    EXPECT_EQ(info.sample_rank, 1);
    EXPECT_EQ(info.source_timestamp.sec, 1'700'000'000);
    EXPECT_EQ(info.source_timestamp.nanosec, 123'456'789u);
    EXPECT_TRUE(equal(info.instance_handle, handle_of(7)));
    EXPECT_TRUE(equal(info.publication_handle,
                      DDS_Entity_get_instance_handle(DDS_DataWriter_as_entity(writer))));
    EXPECT_EQ(info.publication_sequence_number.high, DDS_SEQUENCE_NUMBER_UNKNOWN.high);
    EXPECT_EQ(info.publication_sequence_number.low, DDS_SEQUENCE_NUMBER_UNKNOWN.low);
    EXPECT_EQ(info.sample_state, DDS_NOT_READ_SAMPLE_STATE);
    EXPECT_EQ(info.view_state, DDS_NEW_VIEW_STATE);
    EXPECT_EQ(info.instance_state, DDS_ALIVE_INSTANCE_STATE);
    DDS_DataWriter* other = node.writer();
    ASSERT_EQ(write(other, 7, 72), ok);
    EXPECT_TRUE(equal(await_samples(reader, 1)[0].info.publication_handle,
                      DDS_Entity_get_instance_handle(DDS_DataWriter_as_entity(other))));
    const DDS_LongLong age = samples[1].info.source_timestamp.sec - before.sec;
    EXPECT_TRUE(age >= 0 && age <= 20) << "without a timestamp it is the present: " << age;

    const DDS_Duration_t malformed = {0, 1'000'000'000};
    EXPECT_EQ(DDS_DataWriter_wait_for_acknowledgments(writer, &patience), ok);
    EXPECT_EQ(DDS_DataWriter_wait_for_acknowledgments(writer, &malformed), bad_parameter);
    EXPECT_EQ(DDS_DataWriter_flush(writer), ok);

    const orvane::test::Fault fault("dds_forwardcdr", {.after = true});
    const auto time_out = [&] { EXPECT_EQ(write(writer, 7, 73), DDS_RETCODE_TIMEOUT); };
    EXPECT_EQ(orvane::test::output_of(time_out), "") << "the caller may try again";
}

TEST(Writing, RefusesWhatDoesNotFitTheSample) {
    const ProbeNode node;
    DDS_DataWriter* writer = node.writer();
    const Probe probe(7, 70);
    const Probe too_long(7, 70, std::string(ORVANE_RESPONSE_MESSAGE_BOUND + 1, 'x'));
    DDS_InstanceHandle_t wrong_length = handle_of(7);
    wrong_length.keyHash.length = 15;
    const struct {
        const char* what;
        const void* sample;
        DDS_WriteParams_t params;
        DDS_ReturnCode_t expected;
    } cases[] = {
        {"own handle", &probe, {handle_of(7), {1, 0}}, ok},
        {"another instance", &probe, {handle_of(8), DDS_TIME_INVALID}, bad_parameter},
        {"malformed handle", &probe, {wrong_length, DDS_TIME_INVALID}, bad_parameter},
        {"negative time", &probe, {DDS_HANDLE_NIL, {-2, 0}}, bad_parameter},
        {"a second of nanoseconds", &probe, {DDS_HANDLE_NIL, {1, 1'000'000'000}}, bad_parameter},
        {"no sample", nullptr, DDS_WRITEPARAMS_DEFAULT, bad_parameter},
        {"no encoding", &too_long, DDS_WRITEPARAMS_DEFAULT, DDS_RETCODE_ERROR},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(DDS_DataWriter_write_untypedI(writer, one.sample, &one.params), one.expected)
            << one.what;
    }
    EXPECT_EQ(write(writer, 7, 71), ok) << "refusals leave the writer usable";
}

TEST(Writing, AKeylessTypeHasNoInstanceHandles) {
    const ProbeNode node;
    DDS_Topic* topic = node.make_topic(topic_of_this_test() + "_keyless", "Keyless");
    DDS_DataWriter* writer = node.writer_of(topic);
    DDS_DataReader* reader = node.reader_of(DDS_Topic_as_topicdescription(topic));
    const Probe probe(7, 70);
    const DDS_WriteParams_t with_handle = {handle_of(7), DDS_TIME_INVALID};
    ASSERT_EQ(write(writer, 7, 70), ok);
    EXPECT_EQ(DDS_DataWriter_write_untypedI(writer, &probe, &with_handle), bad_parameter);
    EXPECT_TRUE(
        equal(DDS_DataWriter_register_instance_untypedI(writer, &probe, nullptr), DDS_HANDLE_NIL));
    EXPECT_TRUE(equal(DDS_DataWriter_lookup_instance_untypedI(writer, &probe), DDS_HANDLE_NIL));
    const std::vector<Received> samples = await_samples(reader, 1);
    ASSERT_EQ(summary(samples), "7:70");
    EXPECT_TRUE(equal(samples[0].info.instance_handle, DDS_HANDLE_NIL));
    ASSERT_EQ(DDS_DataWriter_dispose_untypedI(writer, &probe, nullptr), ok);
    EXPECT_EQ(await_samples(reader, 1).size(), 1U);
}

/// Waits until the clock by which batches grow old has moved on.
void await_tick() {
    timespec start{};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &start);
    for (timespec now = start; now.tv_nsec == start.tv_nsec;) {
        clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    }
}

TEST(Batches, AreSentBeforeTheHistoryWouldDropASampleAndBeforeAnythingThatMayWait) {
    const ProbeNode node;
    DDS_DataWriter* of_three = node.writer([](DDS_DataWriterQos& qos) {
        qos.batch.enable = 1;
        qos.history = {DDS_KEEP_LAST_HISTORY_QOS, 3};
        qos.durability.kind = DDS_TRANSIENT_LOCAL_DURABILITY_QOS;
    });
    DDS_DataWriter* writer = node.writer([](DDS_DataWriterQos& qos) { qos.batch.enable = 1; });
    const auto flushes_of = [](const auto& action) {
        const orvane::test::Calls flushes("dds_write_flush");
        EXPECT_EQ(action(), ok);
        return flushes.count();
    };
    int flushes = 0;
    for (DDS_Long value = 0; value < 9; ++value) {
        flushes += flushes_of([&] { return write(of_three, 1, value); });
    }
    EXPECT_GE(flushes, 3);
    DDS_DataReader* late = node.reader([](DDS_DataReaderQos& qos) {
        qos.history = {DDS_KEEP_LAST_HISTORY_QOS, 9};
        qos.durability.kind = DDS_TRANSIENT_LOCAL_DURABILITY_QOS;
    });
    EXPECT_EQ(summary(await_samples(late, 3)), "1:6 1:7 1:8");
    EXPECT_EQ(flushes_of([&] { return write(writer, 1, 1); }), 0);
    await_tick();
    EXPECT_EQ(flushes_of([&] { return write(writer, 1, 2); }), 1) << "an old batch";
    const auto acknowledged = [&] {
        return DDS_DataWriter_wait_for_acknowledgments(writer, &patience);
    };
    EXPECT_EQ(flushes_of(acknowledged), 1);
    DDS_DataWriter* without_batches = node.writer();
    ASSERT_EQ(write(without_batches, 1, 3), ok);
    await_tick();
    EXPECT_EQ(flushes_of([&] { return write(without_batches, 1, 4); }), 0);
}

TEST(LateReaders, GetWhatTheHistoryKeepsOrWhatTheApplicationHasShortenedItTo) {
    const struct {
        DDS_HistoryQosPolicy history;
        DDS_Long depth;  ///< of the durability service
        const char* expected;
    } cases[] = {
        {{DDS_KEEP_ALL_HISTORY_QOS, 1}, 1, "1:0 1:1 1:2 1:3"},
        {{DDS_KEEP_ALL_HISTORY_QOS, 1}, 2, "1:2 1:3"},
        {{DDS_KEEP_LAST_HISTORY_QOS, 3}, 2, "1:1 1:2 1:3"},
    };
    for (const auto& each : cases) {
        const ProbeNode node;
        DDS_DataWriter* writer = node.writer([&](DDS_DataWriterQos& qos) {
            qos.history = each.history;
            qos.durability.kind = DDS_TRANSIENT_LOCAL_DURABILITY_QOS;
            qos.durability_service.history_depth = each.depth;
        });
        for (DDS_Long value = 0; value < 4; ++value) {
            ASSERT_EQ(write(writer, 1, value), ok);
        }
        DDS_DataReader* late = node.reader([](DDS_DataReaderQos& qos) {
            qos.history.kind = DDS_KEEP_ALL_HISTORY_QOS;
            qos.durability.kind = DDS_TRANSIENT_LOCAL_DURABILITY_QOS;
        });
        EXPECT_EQ(summary(await_samples(late, 2)), each.expected);
    }
}

TEST(Instances, DisposeAndUnregisterReachTheReaderAsStatesWithTheKey) {
    const ProbeNode node;
    const Probe first(1, 0);
    const DDS_WriteParams_t of_first = {handle_of(1), DDS_TIME_INVALID};
    const auto dispose = DDS_DataWriter_dispose_untypedI;
    const auto unregister = DDS_DataWriter_unregister_instance_untypedI;
    const DDS_InstanceStateMask disposed = DDS_NOT_ALIVE_DISPOSED_INSTANCE_STATE;
    const DDS_InstanceStateMask no_writers = DDS_NOT_ALIVE_NO_WRITERS_INSTANCE_STATE;
    const struct {
        DDS_ReturnCode_t (*change)(DDS_DataWriter*, const void*, const DDS_WriteParams_t*);
        bool by_handle;
        DDS_Boolean autodispose;
        DDS_InstanceStateMask expected;
    } cases[] = {
        {dispose, false, 0, disposed},      {dispose, true, 0, disposed},
        {unregister, false, 0, no_writers}, {unregister, true, 0, no_writers},
        {unregister, false, 1, disposed},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(&one - cases);
        DDS_DataWriter* writer = node.writer([&](DDS_DataWriterQos& qos) {
            qos.writer_data_lifecycle.autodispose_unregistered_instances = one.autodispose;
        });
        DDS_DataReader* reader = node.reader();
        ASSERT_EQ(write(writer, 1, 10), ok);
        ASSERT_EQ(await_samples(reader, 1).size(), 1U);
        EXPECT_EQ(one.change(writer, one.by_handle ? nullptr : &first,
                             one.by_handle ? &of_first : nullptr),
                  ok);
        const std::vector<Received> changes = await_samples(reader, 1);
        ASSERT_EQ(summary(changes), "1-");
        EXPECT_EQ(changes[0].info.instance_state, one.expected);
        EXPECT_EQ(changes[0].info.view_state, DDS_NOT_NEW_VIEW_STATE);
        EXPECT_TRUE(equal(changes[0].info.instance_handle, handle_of(1)));
        ASSERT_EQ(write(writer, 1, 11), ok);
        const DDS_SampleInfo again = await_samples(reader, 1)[0].info;
        EXPECT_EQ(again.disposed_generation_count, one.change == dispose ? 1 : 0);
        EXPECT_EQ(again.instance_state, DDS_ALIVE_INSTANCE_STATE);
        ASSERT_EQ(node.remove(reader), ok);
        ASSERT_EQ(node.remove(writer), ok);
    }
}

TEST(Instances, AHandleLeadsBackToTheKeyOnBothSides) {
    const ProbeNode node;
    DDS_DataWriter* writer = node.writer();
    DDS_DataReader* reader = node.reader();
    const Probe probe(5, 0);
    const auto unregister = DDS_DataWriter_unregister_instance_untypedI;
    const Probe unknown(6, 0);
    const DDS_WriteParams_t of_unknown = {handle_of(6), DDS_TIME_INVALID};
    EXPECT_EQ(unregister(writer, &probe, nullptr), refused);
    EXPECT_EQ(unregister(writer, nullptr, &of_unknown), bad_parameter);
    EXPECT_EQ(unregister(writer, nullptr, nullptr), bad_parameter);
    const DDS_InstanceHandle_t handle =
        DDS_DataWriter_register_instance_untypedI(writer, &probe, nullptr);
    ASSERT_TRUE(equal(handle, handle_of(5)));
    ASSERT_EQ(write(writer, 5, 50), ok);
    ASSERT_EQ(await_samples(reader, 1).size(), 1u);

    Probe of_writer(0, 1, "kept");
    Probe of_reader;
    EXPECT_EQ(DDS_DataWriter_get_key_value_untypedI(writer, &of_writer, &handle), ok);
    EXPECT_EQ(DDS_DataReader_get_key_value_untypedI(reader, &of_reader, &handle), ok);
    EXPECT_EQ(of_writer.id(), 5);
    EXPECT_STREQ(of_writer.message, "kept") << "members outside the key are left alone";
    EXPECT_EQ(of_reader.id(), 5);
    const long blocks = orvane::test::live_blocks();
    for (int again = 0; again < 20; ++again) {
        DDS_DataReader_get_key_value_untypedI(reader, &of_reader, &handle);
    }
    EXPECT_EQ(orvane::test::live_blocks(), blocks) << "a key holder is used again";
    for (const DDS_InstanceHandle_t& bad : {handle_of(99), DDS_HANDLE_NIL}) {
        EXPECT_EQ(DDS_DataWriter_get_key_value_untypedI(writer, &of_writer, &bad), bad_parameter);
        EXPECT_EQ(DDS_DataReader_get_key_value_untypedI(reader, &of_reader, &bad), bad_parameter);
    }
    EXPECT_EQ(unregister(writer, &probe, nullptr), ok);
    EXPECT_EQ(unregister(writer, &probe, nullptr), refused);
    EXPECT_TRUE(equal(DDS_DataWriter_lookup_instance_untypedI(writer, &unknown), DDS_HANDLE_NIL));
    EXPECT_TRUE(equal(DDS_DataReader_lookup_instance_untypedI(reader, &unknown), DDS_HANDLE_NIL));
}

TEST(Instances, AreReadOneByOneInAStableOrderOrByTheirHandle) {
    const ProbeNode node;
    DDS_DataWriter* writer = node.writer();
    DDS_DataReader* reader = node.reader();
    for (const DDS_Long id : {30, 10, 20, 10}) {
        ASSERT_EQ(write(writer, id, id + 1), ok);
    }
    DDS_InstanceHandle_t handle = DDS_HANDLE_NIL;
    DDS_ReadSelectorI next = read_anything;
    next.next_instance = 1;
    next.instance = &handle;
    DDS_Long ids[] = {10, 20, 30};
    std::ranges::sort(ids, {}, [](DDS_Long id) { return pexa::dds::to_key_hash(handle_of(id)); });
    for (const DDS_Long id : ids) {
        const std::vector<Received> samples = receive(reader, next);
        ASSERT_EQ(samples.size(), id == 10 ? 2U : 1U);
        EXPECT_EQ(samples[0].probe.id(), id) << "the order of the key hashes";
        handle = samples[0].info.instance_handle;
    }
    EXPECT_EQ(ProbeSeq().receive(reader, next), no_data);
    DDS_ReadSelectorI one = take_anything;
    one.instance = &handle;
    handle = handle_of(10);
    EXPECT_EQ(summary(receive(reader, one)), "10:11 10:11");
    EXPECT_EQ(summary(receive(reader, one)), "");
    for (const DDS_InstanceHandle_t& bad : {handle_of(99), DDS_HANDLE_NIL}) {
        handle = bad;
        EXPECT_EQ(ProbeSeq().receive(reader, one), bad_parameter);
    }
    EXPECT_EQ(receive(reader).size(), 2U);
}

}  // namespace

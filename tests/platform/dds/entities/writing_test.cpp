#include <gtest/gtest.h>

#include "platform/dds/interface/value_conversion.hpp"
#include "tests/platform/dds/entities/probe_node.hpp"

namespace {

using pexa::dds::to_handle;

bool equal(const DDS_InstanceHandle_t& left, const DDS_InstanceHandle_t& right) {
    return DDS_InstanceHandle_equals(&left, &right) != 0;
}

DDS_WriteParams_t params(const DDS_InstanceHandle_t& handle, const DDS_Time_t& timestamp) {
    return {handle, timestamp};
}

TEST(Writing, ASampleArrivesWithItsMembersHandlesAndTimestamp) {
    const ProbeNode node;
    DDS_DataWriter* writer = node.writer();
    DDS_DataReader* reader = node.reader();
    const Probe probe(7, 70, "seven");
    const DDS_WriteParams_t given = params(DDS_HANDLE_NIL, {1'700'000'000, 123'456'789});
    const DDS_Time_t before = pexa::dds::to_time(pexa::dds::now());
    ASSERT_EQ(DDS_DataWriter_write_untypedI(writer, &probe, &given), DDS_RETCODE_OK);
    ASSERT_EQ(write(writer, {7, 71}), DDS_RETCODE_OK);
    const std::vector<Received> samples = await_samples(reader, 2);
    ASSERT_EQ(summary(samples), "7:70 7:71");
    const DDS_SampleInfo& info = samples[0].info;
    EXPECT_STREQ(samples[0].probe.text, "seven");
    EXPECT_EQ(info.source_timestamp.sec, 1'700'000'000);
    EXPECT_EQ(info.source_timestamp.nanosec, 123'456'789u);
    EXPECT_TRUE(equal(info.instance_handle, to_handle(hash_of_probe(7))));
    EXPECT_TRUE(equal(info.publication_handle,
                      DDS_Entity_get_instance_handle(DDS_DataWriter_as_entity(writer))));
    EXPECT_EQ(info.sample_state, DDS_NOT_READ_SAMPLE_STATE);
    EXPECT_EQ(info.view_state, DDS_NEW_VIEW_STATE);
    EXPECT_EQ(info.instance_state, DDS_ALIVE_INSTANCE_STATE);
    const DDS_LongLong age = samples[1].info.source_timestamp.sec - before.sec;
    EXPECT_TRUE(age >= 0 && age <= 20) << "without a timestamp it is the present: " << age;

    const DDS_Duration_t malformed = {0, 1'000'000'000};
    EXPECT_EQ(DDS_DataWriter_wait_for_acknowledgments(writer, &patience), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_DataWriter_wait_for_acknowledgments(writer, &malformed),
              DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(DDS_DataWriter_flush(writer), DDS_RETCODE_OK);
}

TEST(Writing, RefusesWhatDoesNotFitTheSample) {
    const ProbeNode node;
    DDS_DataWriter* writer = node.writer();
    const Probe probe(7, 70);
    const Probe refused(7, 70, "!no encoding");
    DDS_InstanceHandle_t wrong_length = to_handle(hash_of_probe(7));
    wrong_length.keyHash.length = 15;
    const struct {
        const char* what;
        const void* sample;
        DDS_WriteParams_t params;
        DDS_ReturnCode_t expected;
    } cases[] = {
        {"own handle", &probe, params(to_handle(hash_of_probe(7)), {1, 0}), DDS_RETCODE_OK},
        {"another instance", &probe, params(to_handle(hash_of_probe(8)), DDS_TIME_INVALID),
         DDS_RETCODE_BAD_PARAMETER},
        {"malformed handle", &probe, params(wrong_length, DDS_TIME_INVALID),
         DDS_RETCODE_BAD_PARAMETER},
        {"negative time", &probe, params(DDS_HANDLE_NIL, {-2, 0}), DDS_RETCODE_BAD_PARAMETER},
        {"a second of nanoseconds", &probe, params(DDS_HANDLE_NIL, {1, 1'000'000'000}),
         DDS_RETCODE_BAD_PARAMETER},
        {"no sample", nullptr, DDS_WRITEPARAMS_DEFAULT, DDS_RETCODE_BAD_PARAMETER},
        {"no encoding", &refused, DDS_WRITEPARAMS_DEFAULT, DDS_RETCODE_ERROR},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(DDS_DataWriter_write_untypedI(writer, one.sample, &one.params), one.expected)
            << one.what;
    }
    EXPECT_EQ(write(writer, {7, 71}), DDS_RETCODE_OK) << "refusals leave the writer usable";
}

TEST(Writing, ABlockedReliableWriterTimesOut) {
    const ProbeNode node;
    const ProbeNode far_away;
    DDS_DataWriter* writer = node.writer([](DDS_DataWriterQos& qos) {
        qos.durability.kind = DDS_VOLATILE_DURABILITY_QOS;
        qos.resource_limits.max_samples = 1;
        qos.reliability.max_blocking_time = {0, 50'000'000};
    });
    DDS_DataReader* reader = far_away.reader([](DDS_DataReaderQos& qos) {
        qos.durability.kind = DDS_VOLATILE_DURABILITY_QOS;
        qos.resource_limits.max_samples = 1;
    });
    ASSERT_TRUE(await_reader(writer));
    ASSERT_TRUE(await_writer(reader));
    // A reader of this process pushes back at once: the one that it has no room for blocks.
    ASSERT_EQ(write(writer, {1, 1}), DDS_RETCODE_OK);
    EXPECT_EQ(write(writer, {1, 2}), DDS_RETCODE_TIMEOUT);
}

TEST(Writing, AKeylessTypeHasNoInstanceHandles) {
    const ProbeNode node;
    DDS_Topic* topic = node.keyless_topic();
    DDS_DataWriter* writer = node.writer(nullptr, topic);
    DDS_DataReader* reader = node.reader(nullptr, DDS_Topic_as_topicdescription(topic));
    const Probe probe(7, 70);
    const DDS_WriteParams_t with_handle = params(to_handle(hash_of_probe(7)), DDS_TIME_INVALID);

    ASSERT_EQ(write(writer, probe), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_DataWriter_write_untypedI(writer, &probe, &with_handle),
              DDS_RETCODE_BAD_PARAMETER);
    EXPECT_TRUE(
        equal(DDS_DataWriter_register_instance_untypedI(writer, &probe, nullptr), DDS_HANDLE_NIL));
    EXPECT_TRUE(equal(DDS_DataWriter_lookup_instance_untypedI(writer, &probe), DDS_HANDLE_NIL));

    const std::vector<Received> samples = await_samples(reader, 1);
    ASSERT_EQ(summary(samples), "7:70");
    EXPECT_TRUE(equal(samples[0].info.instance_handle, DDS_HANDLE_NIL));

    ASSERT_EQ(DDS_DataWriter_dispose_untypedI(writer, &probe, nullptr), DDS_RETCODE_OK);
    const std::vector<Received> disposed = await_samples(reader, 1);
    ASSERT_EQ(disposed.size(), 1u);
    EXPECT_EQ(disposed[0].info.instance_state, DDS_NOT_ALIVE_DISPOSED_INSTANCE_STATE);
}

}  // namespace

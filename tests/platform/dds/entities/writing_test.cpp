#include <gtest/gtest.h>

#include "platform/dds/interface/value_conversion.hpp"
#include "tests/platform/dds/entities/probe_node.hpp"

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
    EXPECT_STREQ(samples[0].probe.text(), "seven");
    EXPECT_EQ(info.source_timestamp.sec, 1'700'000'000);
    EXPECT_EQ(info.source_timestamp.nanosec, 123'456'789u);
    EXPECT_TRUE(equal(info.instance_handle, handle_of(7)));
    EXPECT_TRUE(equal(info.publication_handle,
                      DDS_Entity_get_instance_handle(DDS_DataWriter_as_entity(writer))));
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

    ASSERT_EQ(write(writer, probe), ok);
    EXPECT_EQ(DDS_DataWriter_write_untypedI(writer, &probe, &with_handle), bad_parameter);
    for (const DDS_InstanceHandle_t& handle :
         {DDS_DataWriter_register_instance_untypedI(writer, &probe, nullptr),
          DDS_DataWriter_lookup_instance_untypedI(writer, &probe)}) {
        EXPECT_TRUE(equal(handle, DDS_HANDLE_NIL));
    }
    const std::vector<Received> samples = await_samples(reader, 1);
    ASSERT_EQ(summary(samples), "7:70");
    EXPECT_TRUE(equal(samples[0].info.instance_handle, DDS_HANDLE_NIL));

    ASSERT_EQ(DDS_DataWriter_dispose_untypedI(writer, &probe, nullptr), ok);
    const std::vector<Received> disposed = await_samples(reader, 1);
    ASSERT_EQ(disposed.size(), 1u);
    EXPECT_EQ(disposed[0].info.instance_state, DDS_NOT_ALIVE_DISPOSED_INSTANCE_STATE);
}

}  // namespace

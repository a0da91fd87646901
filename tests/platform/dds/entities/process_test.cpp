#include <spawn.h>
#include <sys/wait.h>

#include <gtest/gtest.h>

#include "tests/platform/dds/entities/echo_process.hpp"
#include "tests/platform/dds/entities/probe_node.hpp"

int echo_until_the_end() {
    const ProbeNode in(calls_topic);
    const ProbeNode out(echoes_topic);
    DDS_DataReader* reader = in.reader();
    DDS_DataWriter* writer = out.writer();
    // What is disposed is not kept for late readers.
    bool echoing = await_reader(writer);
    bool ended = false;
    while (echoing && !ended) {
        const std::vector<Received> samples = await_samples(reader, 1);
        echoing = !samples.empty();
        for (const Received& sample : samples) {
            ended = ended || sample.probe.value == end_of_calls;
            Probe echo = sample.probe;
            echo.value = -echo.value;
            const DDS_ReturnCode_t result =
                sample.info.valid_data != 0
                    ? write(writer, echo)
                    : DDS_DataWriter_dispose_untypedI(writer, &echo, nullptr);
            echoing = echoing && result == DDS_RETCODE_OK;
        }
    }
    return echoing && DDS_DataWriter_wait_for_acknowledgments(writer, &patience) == DDS_RETCODE_OK
               ? 0
               : 1;
}

namespace {

TEST(OtherProcess, ReadsAndWritesTheSameSamplesStatesAndHandles) {
    const ProbeNode out(calls_topic);
    const ProbeNode in(echoes_topic);
    DDS_DataWriter* writer = out.writer();
    DDS_DataReader* reader = in.reader();
    char program[] = "/proc/self/exe";
    char role[] = "--echo";
    char* const arguments[] = {program, role, nullptr};
    pid_t process = -1;
    ASSERT_EQ(posix_spawn(&process, program, nullptr, nullptr, arguments, environ), 0);
    const Probe disposed(2, 0);
    ASSERT_TRUE(await_reader(writer));
    ASSERT_EQ(write(writer, {1, 10, "first"}), DDS_RETCODE_OK);
    ASSERT_EQ(write(writer, {2, 20, "second"}), DDS_RETCODE_OK);
    const std::vector<Received> samples = await_samples(reader, 2);
    ASSERT_EQ(summary(samples), "1:-10 2:-20");
    EXPECT_STREQ(samples[1].probe.text, "second");

    ASSERT_EQ(DDS_DataWriter_dispose_untypedI(writer, &disposed, nullptr), DDS_RETCODE_OK);
    const std::vector<Received> changes = await_samples(reader, 1);
    ASSERT_EQ(summary(changes), "2-");
    EXPECT_EQ(changes[0].info.instance_state, DDS_NOT_ALIVE_DISPOSED_INSTANCE_STATE);

    DDS_InstanceHandleSeq writers{};
    ASSERT_EQ(DDS_DataReader_get_matched_publications(reader, &writers), DDS_RETCODE_OK);
    ASSERT_EQ(DDS_InstanceHandleSeq_get_length(&writers), 1);
    const DDS_InstanceHandle_t echoing = DDS_InstanceHandleSeq_get(&writers, 0);
    EXPECT_EQ(DDS_InstanceHandle_is_valid(&echoing), 1);
    EXPECT_EQ(DDS_InstanceHandle_equals(&samples[0].info.publication_handle, &echoing), 1);
    DDS_InstanceHandleSeq_finalize(&writers);

    ASSERT_EQ(write(writer, {3, end_of_calls}), DDS_RETCODE_OK);
    EXPECT_EQ(summary(await_samples(reader, 1)).substr(0, 4), "3:99");
    int status = -1;
    ASSERT_EQ(waitpid(process, &status, 0), process);
    EXPECT_EQ(status, 0);
}

}  // namespace

#include <spawn.h>
#include <sys/wait.h>

#include <cstdlib>

#include <gtest/gtest.h>

#include "probe_node.hpp"

namespace {

constexpr const char* calls = "process_test_calls";
constexpr const char* echoes = "process_test_echoes";
constexpr DDS_Long end_of_calls = -99;

/// This executable once more, running the test below that echoes.
pid_t start_echo() {
    std::string program = "/proc/self/exe";
    std::string filter = "--gtest_filter=OtherProcess.DISABLED_EchoesUntilTheEnd";
    std::string disabled = "--gtest_also_run_disabled_tests";
    char* const arguments[] = {program.data(), filter.data(), disabled.data(), nullptr};
    pid_t process = -1;
    EXPECT_EQ(posix_spawn(&process, program.c_str(), nullptr, nullptr, arguments, environ), 0);
    return process;
}

TEST(OtherProcess, DISABLED_EchoesUntilTheEnd) {
    const ProbeNode in(calls);
    const ProbeNode out(echoes);
    DDS_DataReader* reader = in.reader();
    DDS_DataWriter* writer = out.writer();
    // What is disposed is not kept for late readers.
    ASSERT_TRUE(await_reader(writer));
    for (bool ended = false; !ended;) {
        const std::vector<Received> samples = await_samples(reader, 1);
        ASSERT_FALSE(samples.empty());
        for (const Received& sample : samples) {
            ended = ended || sample.probe.value == end_of_calls;
            Probe echo = sample.probe;
            echo.value = -echo.value;
            ASSERT_EQ(sample.info.valid_data != 0
                          ? write(writer, echo)
                          : DDS_DataWriter_dispose_untypedI(writer, &echo, nullptr),
                      DDS_RETCODE_OK);
        }
    }
    EXPECT_EQ(DDS_DataWriter_wait_for_acknowledgments(writer, &patience), DDS_RETCODE_OK);
}

TEST(OtherProcess, ReadsAndWritesTheSameSamplesStatesAndHandles) {
    const ProbeNode out(calls);
    const ProbeNode in(echoes);
    DDS_DataWriter* writer = out.writer();
    DDS_DataReader* reader = in.reader();
    const pid_t process = start_echo();
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

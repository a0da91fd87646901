#include <map>

#include <gtest/gtest.h>

#include "tests/platform/dds/entities/probe_node.hpp"

namespace {

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
        ASSERT_EQ(node.remove(reader), ok);
        ASSERT_EQ(node.remove(writer), ok);
    }
}

TEST(Instances, ADisposedInstanceThatIsWrittenAgainIsOfANewGeneration) {
    const ProbeNode node;
    DDS_DataWriter* writer = node.writer();
    DDS_DataReader* reader = node.reader();
    const Probe probe(1, 10);
    ASSERT_EQ(write(writer, probe), ok);
    ASSERT_EQ(DDS_DataWriter_dispose_untypedI(writer, &probe, nullptr), ok);
    ASSERT_EQ(write(writer, 1, 11), ok);
    const std::vector<Received> samples = await_samples(reader, 2);
    ASSERT_EQ(summary(samples), "1:10 1:11");
    EXPECT_EQ(samples[0].info.disposed_generation_count, 0);
    EXPECT_EQ(samples[0].info.generation_rank, 1);
    EXPECT_EQ(samples[0].info.sample_rank, 1);
    EXPECT_EQ(samples[1].info.disposed_generation_count, 1);
    EXPECT_EQ(samples[1].info.instance_state, DDS_ALIVE_INSTANCE_STATE);
}

TEST(Instances, AHandleLeadsBackToTheKeyOnBothSides) {
    const ProbeNode node;
    DDS_DataWriter* writer = node.writer();
    DDS_DataReader* reader = node.reader();
    const Probe probe(5, 0);
    const Probe unknown(6, 0);
    const DDS_WriteParams_t of_unknown = {handle_of(6), DDS_TIME_INVALID};
    EXPECT_EQ(DDS_DataWriter_unregister_instance_untypedI(writer, &probe, nullptr), refused);
    EXPECT_EQ(DDS_DataWriter_unregister_instance_untypedI(writer, nullptr, &of_unknown),
              bad_parameter);
    EXPECT_EQ(DDS_DataWriter_unregister_instance_untypedI(writer, nullptr, nullptr), bad_parameter);
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
    EXPECT_STREQ(of_writer.text(), "kept") << "members outside the key are left alone";
    EXPECT_EQ(of_reader.id(), 5);
    for (const DDS_InstanceHandle_t& bad : {handle_of(99), DDS_HANDLE_NIL}) {
        EXPECT_EQ(DDS_DataWriter_get_key_value_untypedI(writer, &of_writer, &bad), bad_parameter);
        EXPECT_EQ(DDS_DataReader_get_key_value_untypedI(reader, &of_reader, &bad), bad_parameter);
    }
    EXPECT_TRUE(equal(DDS_DataWriter_lookup_instance_untypedI(writer, &probe), handle));
    EXPECT_TRUE(equal(DDS_DataReader_lookup_instance_untypedI(reader, &probe), handle));
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
    std::vector<std::string> walk;
    for (std::vector<Received> samples = receive(reader, next); !samples.empty();
         samples = receive(reader, next)) {
        walk.push_back(summary(samples));
        handle = samples[0].info.instance_handle;
    }
    std::vector<std::string> expected;
    for (const auto& [hash, samples] :
         std::map<pexa::engine::KeyHash, const char*>{{hash_of_probe(10), "10:11 10:11"},
                                                      {hash_of_probe(20), "20:21"},
                                                      {hash_of_probe(30), "30:31"}}) {
        expected.emplace_back(samples);
    }
    EXPECT_EQ(walk, expected) << "the order of the key hashes";

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

#include <gtest/gtest.h>

#include "platform/dds/interface/value_conversion.hpp"
#include "tests/platform/dds/entities/probe_node.hpp"

namespace {

using pexa::dds::to_handle;

DDS_InstanceHandle_t handle_of(DDS_Long id) {
    return to_handle(hash_of_probe(id));
}

bool equal(const DDS_InstanceHandle_t& left, const DDS_InstanceHandle_t& right) {
    return DDS_InstanceHandle_equals(&left, &right) != 0;
}

TEST(Instances, DisposeAndUnregisterReachTheReaderAsStatesWithTheKey) {
    const ProbeNode node;
    const Probe first(1, 0);
    const DDS_WriteParams_t of_first = {handle_of(1), DDS_TIME_INVALID};
    const struct {
        const char* what;
        DDS_ReturnCode_t (*change)(DDS_DataWriter*, const void*, const DDS_WriteParams_t*);
        bool by_handle;
        DDS_Boolean autodispose;
        DDS_InstanceStateMask expected;
    } cases[] = {
        {"dispose", DDS_DataWriter_dispose_untypedI, false, 0,
         DDS_NOT_ALIVE_DISPOSED_INSTANCE_STATE},
        {"dispose by handle", DDS_DataWriter_dispose_untypedI, true, 0,
         DDS_NOT_ALIVE_DISPOSED_INSTANCE_STATE},
        {"unregister", DDS_DataWriter_unregister_instance_untypedI, false, 0,
         DDS_NOT_ALIVE_NO_WRITERS_INSTANCE_STATE},
        {"unregister by handle", DDS_DataWriter_unregister_instance_untypedI, true, 0,
         DDS_NOT_ALIVE_NO_WRITERS_INSTANCE_STATE},
        {"unregister, disposing", DDS_DataWriter_unregister_instance_untypedI, false, 1,
         DDS_NOT_ALIVE_DISPOSED_INSTANCE_STATE},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.what);
        DDS_DataWriter* writer = node.writer([&](DDS_DataWriterQos& qos) {
            qos.writer_data_lifecycle.autodispose_unregistered_instances = one.autodispose;
        });
        DDS_DataReader* reader = node.reader();
        ASSERT_EQ(write(writer, {1, 10}), DDS_RETCODE_OK);
        ASSERT_EQ(await_samples(reader, 1).size(), 1U);
        EXPECT_EQ(one.change(writer, one.by_handle ? nullptr : &first,
                             one.by_handle ? &of_first : nullptr),
                  DDS_RETCODE_OK);
        const std::vector<Received> changes = await_samples(reader, 1);
        ASSERT_EQ(summary(changes), "1-");
        EXPECT_EQ(changes[0].info.instance_state, one.expected);
        EXPECT_EQ(changes[0].info.view_state, DDS_NOT_NEW_VIEW_STATE);
        EXPECT_TRUE(equal(changes[0].info.instance_handle, handle_of(1)));
        ASSERT_EQ(DDS_Subscriber_delete_datareader(node.subscriber, reader), DDS_RETCODE_OK);
        ASSERT_EQ(DDS_Publisher_delete_datawriter(node.publisher, writer), DDS_RETCODE_OK);
    }
}

TEST(Instances, ADisposedInstanceThatIsWrittenAgainIsOfANewGeneration) {
    const ProbeNode node;
    DDS_DataWriter* writer = node.writer();
    DDS_DataReader* reader = node.reader();
    const Probe probe(1, 10);
    ASSERT_EQ(write(writer, probe), DDS_RETCODE_OK);
    ASSERT_EQ(DDS_DataWriter_dispose_untypedI(writer, &probe, nullptr), DDS_RETCODE_OK);
    ASSERT_EQ(write(writer, {1, 11}), DDS_RETCODE_OK);

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
    EXPECT_EQ(DDS_DataWriter_unregister_instance_untypedI(writer, &probe, nullptr),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(DDS_DataWriter_unregister_instance_untypedI(writer, nullptr, &of_unknown),
              DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(DDS_DataWriter_unregister_instance_untypedI(writer, nullptr, nullptr),
              DDS_RETCODE_BAD_PARAMETER);
    const DDS_InstanceHandle_t handle =
        DDS_DataWriter_register_instance_untypedI(writer, &probe, nullptr);
    ASSERT_TRUE(equal(handle, handle_of(5)));
    ASSERT_EQ(write(writer, {5, 50}), DDS_RETCODE_OK);
    ASSERT_EQ(await_samples(reader, 1).size(), 1u);

    Probe of_writer(0, 1, "kept");
    Probe of_reader;
    const DDS_InstanceHandle_t wrong = handle_of(99);
    EXPECT_EQ(DDS_DataWriter_get_key_value_untypedI(writer, &of_writer, &handle), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_DataReader_get_key_value_untypedI(reader, &of_reader, &handle), DDS_RETCODE_OK);
    EXPECT_EQ(of_writer.id, 5);
    EXPECT_STREQ(of_writer.text, "kept") << "members outside the key are left alone";
    EXPECT_EQ(of_reader.id, 5);
    for (const DDS_InstanceHandle_t& bad : {wrong, DDS_HANDLE_NIL}) {
        EXPECT_EQ(DDS_DataWriter_get_key_value_untypedI(writer, &of_writer, &bad),
                  DDS_RETCODE_BAD_PARAMETER);
        EXPECT_EQ(DDS_DataReader_get_key_value_untypedI(reader, &of_reader, &bad),
                  DDS_RETCODE_BAD_PARAMETER);
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
        ASSERT_EQ(write(writer, {id, id + 1}), DDS_RETCODE_OK);
    }
    DDS_InstanceHandle_t handle = DDS_HANDLE_NIL;
    DDS_ReadSelectorI next = take_anything;
    next.take = 0;
    next.next_instance = 1;
    next.instance = &handle;
    std::string walk;
    for (std::vector<Received> samples = receive(reader, next); !samples.empty();
         samples = receive(reader, next)) {
        walk += (walk.empty() ? "" : " | ") + summary(samples);
        handle = samples[0].info.instance_handle;
    }
    EXPECT_EQ(walk, "10:11 10:11 | 20:21 | 30:31");

    DDS_ReadSelectorI one = take_anything;
    one.instance = &handle;
    handle = handle_of(10);
    EXPECT_EQ(summary(receive(reader, one)), "10:11 10:11");
    EXPECT_EQ(summary(receive(reader, one)), "");
    for (const DDS_InstanceHandle_t& bad : {handle_of(99), DDS_HANDLE_NIL}) {
        handle = bad;
        ProbeSeq sequence;
        EXPECT_EQ(sequence.receive(reader, one), DDS_RETCODE_BAD_PARAMETER);
    }
    EXPECT_EQ(receive(reader).size(), 2U);
}

}  // namespace

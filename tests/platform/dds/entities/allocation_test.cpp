#include <malloc.h>

#include <functional>

#include <gtest/gtest.h>

#include "tests/platform/dds/entities/probe_node.hpp"
#include "tests/support/faults.hpp"

namespace {

using orvane::test::Fault;
using orvane::test::heap_allocation;
using orvane::test::new_expression;
using orvane::test::sweep;

TEST(WithoutMemory, NoEntityIsMadeAndNothingIsLeftBehind) {
    const ProbeNode node;
    const std::string name = topic_of_this_test() + "_new";
    // With the allocations of the port itself; the engine ends the process where its own fail.
    const std::pair<int, std::function<const void*()>> cases[] = {
        {2,
         [] {
             return DDS_DomainParticipantFactory_create_participant(
                 ProbeNode::factory(), orvane::test::domain(), nullptr, nullptr, 0);
         }},
        {2, [&] { return node.make_publisher(); }},
        {2, [&] { return node.make_subscriber(); }},
        {2, [&] { return node.make_topic(name); }},
        {3, [&] { return node.default_writer(); }},
        {3, [&] { return node.default_reader(); }},
    };
    orvane::test::Reports reports;
    for (const auto& [allocations, create] : cases) {
        for (int number = 1; number <= allocations; ++number) {
            const Fault fault(new_expression, number);
            EXPECT_EQ(create(), nullptr) << number;
            EXPECT_TRUE(fault.has_struck());
            EXPECT_EQ(reports.take().size(), 1U);
        }
    }
    sweep(heap_allocation, [&] {
        DDS_DataWriter* writer = node.default_writer();
        return writer != nullptr && node.remove(writer) == ok;
    });
    sweep(heap_allocation, [&] {
        DDS_DataReader* reader = node.default_reader();
        return reader != nullptr && node.remove(reader) == ok;
    });
    EXPECT_NE(node.make_topic(name), nullptr) << "the name is free";
    EXPECT_EQ(node.remove(node.topic), ok) << "nothing uses it";
}

TEST(WithoutMemory, FilteredTopicsAndConditionsAreNotMade) {
    const ProbeNode node;
    DDS_DataReader* reader = node.reader();
    DDS_WaitSet* wait_set = DDS_WaitSet_new();
    DDS_Condition* status = DDS_StatusCondition_as_condition(
        DDS_Entity_get_statuscondition(DDS_DataReader_as_entity(reader)));
    const auto make_filtered = [&] {
        DDS_ContentFilteredTopic* topic = DDS_DomainParticipant_create_contentfilteredtopic(
            node.participant(), "filtered", node.topic,
            "invocation = 1 AND invocation = 2 AND invocation = 3", nullptr);
        return topic != nullptr && node.remove(topic) == ok;
    };
    sweep(new_expression, make_filtered);
    sweep(heap_allocation, make_filtered);
    sweep(new_expression, [&] {
        DDS_ReadCondition* condition = DDS_DataReader_create_readcondition(reader, 1, 1, 1);
        return condition != nullptr && DDS_DataReader_delete_readcondition(reader, condition) == ok;
    });
    sweep(new_expression, [&] {
        return DDS_WaitSet_attach_condition(wait_set, status) == ok &&
               DDS_WaitSet_detach_condition(wait_set, status) == ok;
    });
    EXPECT_EQ(DDS_WaitSet_delete(wait_set), ok);
}

TEST(WithoutMemory, ReadingFailsWithoutALoan) {
    const ProbeNode node;
    DDS_DataWriter* writer = node.writer();
    DDS_DataReader* reader = node.reader();
    for (DDS_Long value = 1; value <= 20; ++value) {
        ASSERT_EQ(write(writer, 1, value), ok);
    }
    // A loan that is outstanding leaves its memory to no other, so each read allocates as much.
    ProbeSeq first;
    ProbeSeq held;
    ASSERT_EQ(first.receive(reader, read_anything), ok);
    const orvane::test::Calls calls(new_expression);
    {
        const Fault never(new_expression, 1'000'000);
        ASSERT_EQ(held.receive(reader, read_anything), ok);
    }
    const int allocations = calls.count();
    // The engine, which allocates between the loan and its two arrays, would end the process. On
    // the heap the reader's pool has to grow.
    const std::pair<const char*, int> cases[] = {{new_expression, 1},
                                                 {new_expression, allocations - 1},
                                                 {new_expression, allocations},
                                                 {heap_allocation, 1}};
    for (const auto& [allocation, number] : cases) {
        const Fault fault(allocation, number);
        EXPECT_EQ(ProbeSeq().receive(reader, read_anything), DDS_RETCODE_OUT_OF_RESOURCES)
            << number;
        EXPECT_TRUE(fault.has_struck());
    }
    EXPECT_EQ(first.return_loan(reader), ok);
    EXPECT_EQ(held.return_loan(reader), ok);
    EXPECT_EQ(receive(reader).size(), 20U);
}

TEST(WithoutMemory, SamplesThatAReadHasNoRoomForAreFreed) {
    const ProbeNode node;
    DDS_DataWriter* writer = node.writer([](DDS_DataWriterQos& qos) {
        qos.history = {DDS_KEEP_LAST_HISTORY_QOS, 1};
    });
    DDS_DataReader* reader = node.reader();
    constexpr std::size_t rounds = 200;
    constexpr std::size_t least_size = 50;
    const auto lose_samples = [&] {
        for (std::size_t round = 0; round < rounds; ++round) {
            ASSERT_EQ(write(writer, 1, 1), ok);
            const Fault list_of_samples(new_expression, 2);
            ASSERT_EQ(ProbeSeq().receive(reader, take_anything), DDS_RETCODE_OUT_OF_RESOURCES);
        }
    };
    // A loan that is outstanding leaves its memory to no other read.
    ProbeSeq loan;
    ASSERT_EQ(write(writer, 1, 1), ok);
    ASSERT_EQ(loan.receive(reader, take_anything), ok);
    lose_samples();
    const std::size_t before = mallinfo2().uordblks;
    lose_samples();
    EXPECT_LT(mallinfo2().uordblks, before + rounds * least_size);
    EXPECT_EQ(loan.return_loan(reader), ok);
}

}  // namespace

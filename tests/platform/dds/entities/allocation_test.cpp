#include <malloc.h>

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
    orvane::test::Reports reports;
    const auto expect_all_or_nothing = [&](auto make, auto remove,
                                           const char* allocation = new_expression) {
        sweep(allocation, [&] {
            auto* const made = make();
            EXPECT_EQ(reports.take().size(), made == nullptr ? 1U : 0U);
            return made != nullptr && remove(made) == ok;
        });
    };
    const auto remove = [&](auto* entity) { return node.remove(entity); };
    expect_all_or_nothing(
        [] {
            return DDS_DomainParticipantFactory_create_participant(
                ProbeNode::factory(), orvane::test::domain(), nullptr, nullptr, 0);
        },
        [](DDS_DomainParticipant* participant) {
            return DDS_DomainParticipantFactory_delete_participant(ProbeNode::factory(),
                                                                   participant);
        });
    expect_all_or_nothing([&] { return node.make_publisher(); }, remove);
    expect_all_or_nothing([&] { return node.make_subscriber(); }, remove);
    expect_all_or_nothing([&] { return node.make_topic(name); }, remove);
    for (const char* allocation : {new_expression, heap_allocation}) {
        expect_all_or_nothing([&] { return node.default_writer(); }, remove, allocation);
        expect_all_or_nothing([&] { return node.default_reader(); }, remove, allocation);
    }
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

TEST(WithoutMemory, ReadingFailsWithoutALoanAndFreesWhatItCouldNotLend) {
    const ProbeNode node;
    DDS_DataWriter* writer = node.writer([](DDS_DataWriterQos& qos) {
        qos.history = {DDS_KEEP_LAST_HISTORY_QOS, 1};
    });
    DDS_DataReader* reader = node.reader();
    for (DDS_Long value = 1; value <= 20; ++value) {
        ASSERT_EQ(write(writer, value, value), ok);
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
    // The loan, its two arrays, and the engine's array between them. After that one has failed, the
    // loan is there for the next read. On the heap the reader's pool has to grow.
    const std::pair<const char*, int> cases[] = {{new_expression, 1},
                                                 {new_expression, allocations - 1},
                                                 {new_expression, allocations},
                                                 {new_expression, 2},
                                                 {heap_allocation, 1}};
    for (const auto& [allocation, number] : cases) {
        const Fault fault(allocation, number);
        EXPECT_EQ(ProbeSeq().receive(reader, read_anything), DDS_RETCODE_OUT_OF_RESOURCES)
            << number;
        EXPECT_TRUE(fault.has_struck());
    }
    EXPECT_EQ(receive(reader).size(), 20U);

    constexpr std::size_t rounds = 200;
    constexpr std::size_t least_size = 50;
    const auto lose_samples = [&] {
        for (std::size_t round = 0; round < rounds; ++round) {
            ASSERT_EQ(write(writer, 1, 1), ok);
            const Fault list_of_samples(new_expression, 2);
            ASSERT_EQ(ProbeSeq().receive(reader, take_anything), DDS_RETCODE_OUT_OF_RESOURCES);
        }
    };
    // Holds the loan that is left.
    ProbeSeq last;
    ASSERT_EQ(write(writer, 1, 1), ok);
    ASSERT_EQ(last.receive(reader), ok);
    lose_samples();
    const std::size_t before = mallinfo2().uordblks;
    lose_samples();
    EXPECT_LT(mallinfo2().uordblks, before + rounds * least_size);
    for (ProbeSeq* loan : {&first, &held, &last}) {
        EXPECT_EQ(loan->return_loan(reader), ok);
    }
}

}  // namespace

#include <functional>

#include <gtest/gtest.h>

#include "tests/platform/dds/entities/probe_node.hpp"
#include "tests/support/failing_new.hpp"
#include "tests/support/heap_faults.hpp"
#include "tests/support/reports.hpp"

namespace {

/// Fails the 1st, 2nd, 3rd … operator new of @p attempt until it succeeds.
void sweep_new(const std::function<bool()>& attempt) {
    for (int number = 1; number < 100; ++number) {
        failing_new::fail_allocation(number);
        const bool succeeded = attempt();
        ASSERT_EQ(failing_new::was_out_of_reach(), succeeded) << "allocation " << number;
        if (succeeded) {
            EXPECT_GT(number, 1) << "nothing was allocated";
            return;
        }
    }
    FAIL() << "still failing";
}

TEST(WithoutMemory, NoEntityIsMadeAndNothingIsLeftBehind) {
    const ProbeNode node;
    const std::string name = topic_of_this_test() + "_new";
    DDS_DomainParticipant* participant = node.participant;
    const auto new_writer = [&] {
        return DDS_Publisher_create_datawriter(node.publisher, node.topic, nullptr, nullptr, 0);
    };
    const auto new_reader = [&] {
        return DDS_Subscriber_create_datareader(
            node.subscriber, DDS_Topic_as_topicdescription(node.topic), nullptr, nullptr, 0);
    };
    const struct {
        /// Allocations of the port itself; the engine ends the process where its own fail.
        int allocations;
        std::function<const void*()> create;
    } cases[] = {
        {2,
         [] {
             return DDS_DomainParticipantFactory_create_participant(
                 DDS_DomainParticipantFactory_get_instance(), ORVANE_TEST_DOMAIN, nullptr, nullptr,
                 0);
         }},
        {2,
         [&] { return DDS_DomainParticipant_create_publisher(participant, nullptr, nullptr, 0); }},
        {2,
         [&] { return DDS_DomainParticipant_create_subscriber(participant, nullptr, nullptr, 0); }},
        {2,
         [&] {
             return DDS_DomainParticipant_create_topic(participant, name.c_str(), "Probe", nullptr,
                                                       nullptr, 0);
         }},
        {3, new_writer},
        {3, new_reader},
    };
    Reports reports;
    for (const auto& one : cases) {
        for (int number = 1; number <= one.allocations; ++number) {
            SCOPED_TRACE(std::to_string(&one - cases) + " " + std::to_string(number));
            failing_new::fail_allocation(number);
            const void* created = one.create();
            EXPECT_FALSE(failing_new::was_out_of_reach());
            EXPECT_EQ(created, nullptr);
            EXPECT_EQ(reports.take().size(), 1U);
        }
    }
    heap_faults::sweep([&] {
        DDS_DataWriter* writer = new_writer();
        return writer != nullptr &&
               DDS_Publisher_delete_datawriter(node.publisher, writer) == DDS_RETCODE_OK;
    });
    heap_faults::sweep([&] {
        DDS_DataReader* reader = new_reader();
        return reader != nullptr &&
               DDS_Subscriber_delete_datareader(node.subscriber, reader) == DDS_RETCODE_OK;
    });
    EXPECT_EQ(DDS_DomainParticipant_lookup_topicdescription(participant, name.c_str()), nullptr);
    EXPECT_EQ(DDS_DomainParticipant_delete_topic(participant, node.topic), DDS_RETCODE_OK)
        << "nothing uses it";
    EXPECT_EQ(DDS_DomainParticipant_delete_publisher(participant, node.publisher), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_DomainParticipant_delete_subscriber(participant, node.subscriber),
              DDS_RETCODE_OK);
}

TEST(WithoutMemory, FilteredTopicsAndConditionsAreNotMade) {
    const ProbeNode node;
    DDS_DataReader* reader = node.reader();
    sweep_new([&] {
        DDS_ContentFilteredTopic* topic = DDS_DomainParticipant_create_contentfilteredtopic(
            node.participant, "filtered", node.topic, "value = 1 AND id = 2 AND value = 3",
            nullptr);
        return topic != nullptr && DDS_DomainParticipant_delete_contentfilteredtopic(
                                       node.participant, topic) == DDS_RETCODE_OK;
    });
    sweep_new([&] {
        DDS_ReadCondition* condition = DDS_DataReader_create_readcondition(reader, 1, 1, 1);
        return condition != nullptr &&
               DDS_DataReader_delete_readcondition(reader, condition) == DDS_RETCODE_OK;
    });
    DDS_WaitSet* wait_set = DDS_WaitSet_new();
    DDS_Condition* condition = DDS_StatusCondition_as_condition(
        DDS_Entity_get_statuscondition(DDS_DataReader_as_entity(reader)));
    sweep_new([&] {
        return DDS_WaitSet_attach_condition(wait_set, condition) == DDS_RETCODE_OK &&
               DDS_WaitSet_detach_condition(wait_set, condition) == DDS_RETCODE_OK;
    });
    EXPECT_EQ(DDS_WaitSet_delete(wait_set), DDS_RETCODE_OK);
}

TEST(WithoutMemory, ReadingFailsWithoutALoan) {
    const ProbeNode node;
    DDS_DataWriter* writer = node.writer();
    DDS_DataReader* reader = node.reader();
    for (DDS_Long value = 1; value <= 20; ++value) {
        ASSERT_EQ(write(writer, {1, value}), DDS_RETCODE_OK);
    }
    DDS_ReadSelectorI reading = take_anything;
    reading.take = 0;
    const auto read = [&] {
        ProbeSeq sequence;
        const DDS_ReturnCode_t result = sequence.receive(reader, reading);
        if (result == DDS_RETCODE_OK) {
            EXPECT_GE(sequence.data.count, 20);
            EXPECT_EQ(sequence.return_loan(reader), DDS_RETCODE_OK);
            return true;
        }
        EXPECT_EQ(result, DDS_RETCODE_OUT_OF_RESOURCES);
        return false;
    };
    // What an attempt allocates before it fails serves the next one, so each fails one step later.
    int failures = 0;
    bool succeeded = false;
    while (!succeeded && failures < 10) {
        failing_new::fail_allocation(1);
        succeeded = read();
        ASSERT_EQ(failing_new::was_out_of_reach(), succeeded);
        failures += succeeded ? 0 : 1;
    }
    EXPECT_GE(failures, 4) << "the loan, what is received, the samples and their infos";
    // With forty samples the reader's pool has to grow.
    for (DDS_Long value = 21; value <= 40; ++value) {
        ASSERT_EQ(write(writer, {1, value}), DDS_RETCODE_OK);
    }
    heap_faults::fail_allocation(1);
    EXPECT_FALSE(read());
    EXPECT_FALSE(heap_faults::was_out_of_reach());
    EXPECT_TRUE(read());
}

}  // namespace

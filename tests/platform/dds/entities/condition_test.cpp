#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "tests/platform/dds/entities/probe_node.hpp"

namespace {

constexpr DDS_Duration_t at_once = {0, 0};

/// A wait set and the conditions of its last wait.
class Waiting {
public:
    Waiting() : set_(DDS_WaitSet_new()) { DDS_ConditionSeq_initialize(&active_); }
    Waiting(const Waiting&) = delete;
    Waiting& operator=(const Waiting&) = delete;
    ~Waiting() {
        DDS_ConditionSeq_finalize(&active_);
        EXPECT_EQ(DDS_WaitSet_delete(set_), DDS_RETCODE_OK);
    }

    DDS_ReturnCode_t attach(DDS_Condition* condition) {
        return DDS_WaitSet_attach_condition(set_, condition);
    }
    DDS_ReturnCode_t detach(DDS_Condition* condition) {
        return DDS_WaitSet_detach_condition(set_, condition);
    }
    DDS_ReturnCode_t wait(const DDS_Duration_t& timeout) {
        return DDS_WaitSet_wait(set_, &active_, &timeout);
    }
    std::vector<DDS_Condition*> active() {
        std::vector<DDS_Condition*> conditions;
        for (DDS_Long i = 0; i < DDS_ConditionSeq_get_length(&active_); ++i) {
            conditions.push_back(DDS_ConditionSeq_get(&active_, i));
        }
        return conditions;
    }

private:
    DDS_WaitSet* set_;
    DDS_ConditionSeq active_{};
};

using Conditions = std::vector<DDS_Condition*>;

TEST(WaitSets, NameTheConditionsThatAreTrue) {
    DDS_GuardCondition* first = DDS_GuardCondition_new();
    DDS_GuardCondition* second = DDS_GuardCondition_new();
    DDS_Condition* first_condition = DDS_GuardCondition_as_condition(first);
    DDS_Condition* second_condition = DDS_GuardCondition_as_condition(second);
    {
        Waiting waiting;
        ASSERT_EQ(waiting.attach(first_condition), DDS_RETCODE_OK);
        ASSERT_EQ(waiting.attach(second_condition), DDS_RETCODE_OK);
        ASSERT_EQ(waiting.attach(second_condition), DDS_RETCODE_OK) << "changes nothing";
        EXPECT_EQ(waiting.wait(at_once), DDS_RETCODE_TIMEOUT);
        EXPECT_EQ(waiting.active(), Conditions{});

        ASSERT_EQ(DDS_GuardCondition_set_trigger_value(second, 1), DDS_RETCODE_OK);
        EXPECT_EQ(DDS_Condition_get_trigger_value(second_condition), 1);
        EXPECT_EQ(waiting.wait(patience), DDS_RETCODE_OK);
        EXPECT_EQ(waiting.active(), Conditions{second_condition});
        ASSERT_EQ(DDS_GuardCondition_set_trigger_value(first, 1), DDS_RETCODE_OK);
        EXPECT_EQ(waiting.wait(patience), DDS_RETCODE_OK);
        EXPECT_EQ(waiting.active(), (Conditions{first_condition, second_condition}));

        EXPECT_EQ(DDS_GuardCondition_delete(first), DDS_RETCODE_PRECONDITION_NOT_MET);
        EXPECT_EQ(waiting.detach(first_condition), DDS_RETCODE_OK);
        EXPECT_EQ(waiting.detach(first_condition), DDS_RETCODE_PRECONDITION_NOT_MET);
        ASSERT_EQ(DDS_GuardCondition_set_trigger_value(second, 0), DDS_RETCODE_OK);
        EXPECT_EQ(waiting.wait(at_once), DDS_RETCODE_TIMEOUT);
        const DDS_Duration_t malformed = {-1, 0};
        EXPECT_EQ(waiting.wait(malformed), DDS_RETCODE_BAD_PARAMETER);
    }
    EXPECT_EQ(DDS_GuardCondition_delete(first), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_GuardCondition_delete(second), DDS_RETCODE_OK)
        << "the wait set's deletion detached it";
}

TEST(WaitSets, AreForOneThreadAtATime) {
    Waiting waiting;
    DDS_GuardCondition* guard = DDS_GuardCondition_new();
    ASSERT_EQ(waiting.attach(DDS_GuardCondition_as_condition(guard)), DDS_RETCODE_OK);
    std::atomic<int> refusals = 0;
    std::vector<std::thread> threads;
    // Whichever comes second is refused and ends the other one's waiting.
    for (int i = 0; i < 2; ++i) {
        threads.emplace_back([&] {
            if (waiting.wait(patience) == DDS_RETCODE_PRECONDITION_NOT_MET) {
                ++refusals;
                DDS_GuardCondition_set_trigger_value(guard, 1);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(refusals, 1);
    EXPECT_EQ(waiting.detach(DDS_GuardCondition_as_condition(guard)), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_GuardCondition_delete(guard), DDS_RETCODE_OK);
}

TEST(ReadConditions, AreTrueWhileTheReaderHasSuchSamples) {
    const ProbeNode node;
    DDS_DataWriter* writer = node.writer();
    DDS_DataReader* reader = node.reader();
    DDS_ReadCondition* unread = DDS_DataReader_create_readcondition(
        reader, DDS_NOT_READ_SAMPLE_STATE, DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE);
    DDS_Condition* condition = DDS_ReadCondition_as_condition(unread);
    EXPECT_EQ(DDS_ReadCondition_get_datareader(unread), reader);
    Waiting waiting;
    ASSERT_EQ(waiting.attach(condition), DDS_RETCODE_OK);
    EXPECT_EQ(waiting.wait(at_once), DDS_RETCODE_TIMEOUT);
    ASSERT_EQ(write(writer, {1, 1}), DDS_RETCODE_OK);
    EXPECT_EQ(waiting.wait(patience), DDS_RETCODE_OK);
    EXPECT_EQ(waiting.active(), Conditions{condition});
    DDS_ReadSelectorI reading = take_anything;
    reading.take = 0;
    EXPECT_EQ(summary(receive(reader, reading)), "1:1");
    EXPECT_EQ(DDS_Condition_get_trigger_value(condition), 0);

    // Deleted while it is attached, the condition leaves the wait set.
    EXPECT_EQ(DDS_DataReader_delete_readcondition(reader, unread), DDS_RETCODE_OK);
    ASSERT_EQ(write(writer, {1, 2}), DDS_RETCODE_OK);
    EXPECT_EQ(waiting.wait(at_once), DDS_RETCODE_TIMEOUT);
    // So does one that goes with its reader.
    DDS_ReadCondition* any = DDS_DataReader_create_readcondition(
        reader, DDS_ANY_SAMPLE_STATE, DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE);
    ASSERT_EQ(waiting.attach(DDS_ReadCondition_as_condition(any)), DDS_RETCODE_OK);
    EXPECT_EQ(waiting.wait(at_once), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_Subscriber_delete_contained_entities(node.subscriber), DDS_RETCODE_OK);
    EXPECT_EQ(waiting.wait(at_once), DDS_RETCODE_TIMEOUT);
}

TEST(StatusConditions, AreTrueForTheEnabledStatusesUntilTheStatusIsRead) {
    const ProbeNode node;
    DDS_DataWriter* writer = node.writer();
    DDS_Entity* entity = DDS_DataWriter_as_entity(writer);
    DDS_StatusCondition* status = DDS_Entity_get_statuscondition(entity);
    DDS_Condition* condition = DDS_StatusCondition_as_condition(status);
    EXPECT_EQ(DDS_StatusCondition_get_entity(status), entity);
    EXPECT_EQ(DDS_StatusCondition_get_enabled_statuses(status), DDS_STATUS_MASK_ALL);
    Waiting waiting;
    ASSERT_EQ(waiting.attach(condition), DDS_RETCODE_OK);

    DDS_DataReader* reader = node.reader();
    EXPECT_EQ(waiting.wait(patience), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_Entity_get_status_changes(entity), DDS_PUBLICATION_MATCHED_STATUS);
    ASSERT_EQ(DDS_StatusCondition_set_enabled_statuses(status, DDS_LIVELINESS_LOST_STATUS),
              DDS_RETCODE_OK);
    EXPECT_EQ(DDS_Condition_get_trigger_value(condition), 0);
    ASSERT_EQ(DDS_StatusCondition_set_enabled_statuses(status, DDS_STATUS_MASK_ALL),
              DDS_RETCODE_OK);
    EXPECT_EQ(DDS_Condition_get_trigger_value(condition), 1);

    DDS_PublicationMatchedStatus matched{};
    ASSERT_EQ(DDS_DataWriter_get_publication_matched_status(writer, &matched), DDS_RETCODE_OK);
    EXPECT_EQ(matched.total_count_change, 1);
    const DDS_InstanceHandle_t peer =
        DDS_Entity_get_instance_handle(DDS_DataReader_as_entity(reader));
    EXPECT_EQ(DDS_InstanceHandle_equals(&matched.last_subscription_handle, &peer), 1);
    EXPECT_EQ(DDS_Condition_get_trigger_value(condition), 0);
    ASSERT_EQ(DDS_DataWriter_get_publication_matched_status(writer, &matched), DDS_RETCODE_OK);
    EXPECT_EQ(matched.total_count, 1);
    EXPECT_EQ(matched.total_count_change, 0) << "reading resets the changes";

    // The entity's deletion takes its condition out of the wait set.
    ASSERT_EQ(DDS_Publisher_delete_datawriter(node.publisher, writer), DDS_RETCODE_OK);
    EXPECT_EQ(waiting.wait(at_once), DDS_RETCODE_TIMEOUT);
}

}  // namespace

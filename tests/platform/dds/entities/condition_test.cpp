#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "tests/platform/dds/entities/probe_node.hpp"

namespace {

constexpr DDS_Duration_t at_once = {0, 0};

using Conditions = std::vector<DDS_Condition*>;

class WaitSets : public testing::Test {
protected:
    ~WaitSets() override { EXPECT_EQ(DDS_WaitSet_delete(set_), ok); }

    DDS_ReturnCode_t attach(DDS_Condition* condition) const {
        return DDS_WaitSet_attach_condition(set_, condition);
    }
    /// @return the conditions that end a wait, or one that is NULL when waiting is refused
    Conditions active(const DDS_Duration_t& timeout = patience) const {
        Conditions conditions;
        DDS_ConditionSeq sequence{};
        const DDS_ReturnCode_t result = DDS_WaitSet_wait(set_, &sequence, &timeout);
        for (DDS_Long i = 0; i < DDS_ConditionSeq_get_length(&sequence); ++i) {
            conditions.push_back(DDS_ConditionSeq_get(&sequence, i));
        }
        DDS_ConditionSeq_finalize(&sequence);
        if (result == refused) {
            return {nullptr};
        }
        EXPECT_EQ(result, conditions.empty() ? DDS_RETCODE_TIMEOUT : ok);
        return conditions;
    }

    DDS_WaitSet* set_ = DDS_WaitSet_new();
};

TEST_F(WaitSets, NameTheConditionsThatAreTrue) {
    DDS_GuardCondition* guards[] = {DDS_GuardCondition_new(), DDS_GuardCondition_new()};
    DDS_Condition* first = DDS_GuardCondition_as_condition(guards[0]);
    DDS_Condition* second = DDS_GuardCondition_as_condition(guards[1]);
    ASSERT_EQ(attach(first), ok);
    ASSERT_EQ(attach(second), ok);
    ASSERT_EQ(attach(second), ok) << "changes nothing";
    EXPECT_EQ(active(at_once), Conditions{});

    ASSERT_EQ(DDS_GuardCondition_set_trigger_value(guards[1], 1), ok);
    EXPECT_EQ(DDS_Condition_get_trigger_value(second), 1);
    EXPECT_EQ(active(), Conditions{second});
    ASSERT_EQ(DDS_GuardCondition_set_trigger_value(guards[0], 1), ok);
    EXPECT_EQ(active(), (Conditions{first, second}));

    EXPECT_EQ(DDS_GuardCondition_delete(guards[0]), refused);
    EXPECT_EQ(DDS_WaitSet_detach_condition(set_, first), ok);
    EXPECT_EQ(DDS_WaitSet_detach_condition(set_, first), refused);
    ASSERT_EQ(DDS_GuardCondition_set_trigger_value(guards[1], 0), ok);
    EXPECT_EQ(active(at_once), Conditions{});
    EXPECT_EQ(DDS_WaitSet_delete(std::exchange(set_, DDS_WaitSet_new())), ok) << "detaches all";
    EXPECT_EQ(DDS_GuardCondition_delete(guards[0]), ok);
    EXPECT_EQ(DDS_GuardCondition_delete(guards[1]), ok);
}

TEST_F(WaitSets, AreForOneThreadAtATime) {
    DDS_GuardCondition* guard = DDS_GuardCondition_new();
    ASSERT_EQ(attach(DDS_GuardCondition_as_condition(guard)), ok);
    std::atomic<int> refusals = 0;
    // Whichever comes second is refused and ends the other one's waiting.
    const auto wait = [&] {
        if (active() == Conditions{nullptr}) {
            ++refusals;
            DDS_GuardCondition_set_trigger_value(guard, 1);
        }
    };
    std::thread other(wait);
    wait();
    other.join();
    EXPECT_EQ(refusals, 1);
    EXPECT_EQ(DDS_WaitSet_delete(std::exchange(set_, DDS_WaitSet_new())), ok);
    EXPECT_EQ(DDS_GuardCondition_delete(guard), ok);
}

TEST_F(WaitSets, ReadConditionsAreTrueWhileTheReaderHasSuchSamples) {
    const ProbeNode node;
    DDS_DataWriter* writer = node.writer();
    DDS_DataReader* reader = node.reader();
    DDS_ReadCondition* unread = DDS_DataReader_create_readcondition(
        reader, DDS_NOT_READ_SAMPLE_STATE, DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE);
    DDS_Condition* condition = DDS_ReadCondition_as_condition(unread);
    EXPECT_EQ(DDS_ReadCondition_get_datareader(unread), reader);
    ASSERT_EQ(attach(condition), ok);
    EXPECT_EQ(active(at_once), Conditions{});
    ASSERT_EQ(write(writer, 1, 1), ok);
    EXPECT_EQ(active(), Conditions{condition});
    EXPECT_EQ(summary(receive(reader, read_anything)), "1:1");
    EXPECT_EQ(DDS_Condition_get_trigger_value(condition), 0);

    // Deleted while it is attached, the condition leaves the wait set.
    EXPECT_EQ(DDS_DataReader_delete_readcondition(reader, unread), ok);
    ASSERT_EQ(write(writer, 1, 2), ok);
    EXPECT_EQ(active(at_once), Conditions{});
    // So does one that goes with its reader.
    condition = DDS_ReadCondition_as_condition(DDS_DataReader_create_readcondition(
        reader, DDS_ANY_SAMPLE_STATE, DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE));
    ASSERT_EQ(attach(condition), ok);
    EXPECT_EQ(active(at_once), Conditions{condition});
    EXPECT_EQ(DDS_Subscriber_delete_contained_entities(node.subscriber()), ok);
    EXPECT_EQ(active(at_once), Conditions{});
}

TEST_F(WaitSets, StatusConditionsAreTrueForTheEnabledStatusesUntilTheStatusIsRead) {
    const ProbeNode node;
    DDS_DataWriter* writer = node.writer();
    DDS_Entity* entity = DDS_DataWriter_as_entity(writer);
    DDS_StatusCondition* status = DDS_Entity_get_statuscondition(entity);
    DDS_Condition* condition = DDS_StatusCondition_as_condition(status);
    EXPECT_EQ(DDS_StatusCondition_get_entity(status), entity);
    ASSERT_EQ(attach(condition), ok);

    DDS_DataReader* reader = node.reader();
    EXPECT_EQ(active(), Conditions{condition});
    EXPECT_EQ(DDS_Entity_get_status_changes(entity), DDS_PUBLICATION_MATCHED_STATUS);
    ASSERT_EQ(DDS_StatusCondition_set_enabled_statuses(status, DDS_LIVELINESS_LOST_STATUS), ok);
    EXPECT_EQ(DDS_Condition_get_trigger_value(condition), 0);
    ASSERT_EQ(DDS_StatusCondition_set_enabled_statuses(status, DDS_STATUS_MASK_ALL), ok);
    EXPECT_EQ(DDS_Condition_get_trigger_value(condition), 1);

    DDS_PublicationMatchedStatus matched{};
    for (const DDS_Long change : {1, 0}) {
        ASSERT_EQ(DDS_DataWriter_get_publication_matched_status(writer, &matched), ok);
        EXPECT_EQ(matched.total_count, 1);
        EXPECT_EQ(matched.total_count_change, change) << "reading resets the changes";
        EXPECT_EQ(DDS_Condition_get_trigger_value(condition), 0);
    }
    EXPECT_TRUE(equal(matched.last_subscription_handle,
                      DDS_Entity_get_instance_handle(DDS_DataReader_as_entity(reader))));

    // The entity's deletion takes its condition out of the wait set.
    ASSERT_EQ(node.remove(writer), ok);
    EXPECT_EQ(active(at_once), Conditions{});
}

}  // namespace

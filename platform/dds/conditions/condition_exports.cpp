#include "platform/dds/conditions/condition.hpp"
#include "platform/dds/conditions/wait_set.hpp"
#include "platform/dds/endpoints/reader.hpp"
#include "platform/dds/entity/entity.hpp"

namespace dds = pexa::dds;

DDS_ReadCondition* DDS_DataReader_create_readcondition(DDS_DataReader* self,
                                                       DDS_SampleStateMask sampleStates,
                                                       DDS_ViewStateMask viewStates,
                                                       DDS_InstanceStateMask states) {
    return dds::call(__func__, self, &dds::DataReader::create_condition, sampleStates, viewStates,
                     states);
}

DDS_ReturnCode_t DDS_DataReader_delete_readcondition(DDS_DataReader* self,
                                                     DDS_ReadCondition* condition) {
    return dds::call(__func__, self, &dds::DataReader::delete_condition, dds::required(condition));
}

DDS_DataReader* DDS_ReadCondition_get_datareader(DDS_ReadCondition* self) {
    return dds::call(__func__, self, &dds::ReadCondition::reader);
}

DDS_Condition* DDS_ReadCondition_as_condition(DDS_ReadCondition* self) {
    return dds::call(__func__, self, &dds::ReadCondition::as_condition);
}

DDS_GuardCondition* DDS_GuardCondition_new() {
    const dds::Operation operation(__func__);
    return dds::guarded(operation, [&] { return dds::GuardCondition::create(operation); });
}

DDS_ReturnCode_t DDS_GuardCondition_delete(DDS_GuardCondition* self) {
    return dds::call(__func__, self, &dds::GuardCondition::destroy);
}

DDS_ReturnCode_t DDS_GuardCondition_set_trigger_value(DDS_GuardCondition* self, DDS_Boolean value) {
    return dds::call(__func__, self, &dds::GuardCondition::set_trigger_value, value);
}

DDS_Condition* DDS_GuardCondition_as_condition(DDS_GuardCondition* self) {
    return dds::call(__func__, self, &dds::GuardCondition::as_condition);
}

DDS_ReturnCode_t DDS_StatusCondition_set_enabled_statuses(DDS_StatusCondition* self,
                                                          DDS_StatusMask mask) {
    return dds::call(__func__, self, &dds::StatusCondition::set_enabled_statuses, mask);
}

DDS_StatusMask DDS_StatusCondition_get_enabled_statuses(DDS_StatusCondition* self) {
    return dds::call(__func__, self, &dds::StatusCondition::enabled_statuses);
}

DDS_Entity* DDS_StatusCondition_get_entity(DDS_StatusCondition* self) {
    return dds::call(__func__, self, &dds::StatusCondition::entity);
}

DDS_Condition* DDS_StatusCondition_as_condition(DDS_StatusCondition* self) {
    return dds::call(__func__, self, &dds::StatusCondition::as_condition);
}

DDS_Boolean DDS_Condition_get_trigger_value(DDS_Condition* self) {
    return dds::call(__func__, self, &dds::Condition::triggered);
}

DDS_WaitSet* DDS_WaitSet_new() {
    const dds::Operation operation(__func__);
    return dds::guarded(operation, [&] { return dds::WaitSet::create(operation); });
}

DDS_ReturnCode_t DDS_WaitSet_delete(DDS_WaitSet* self) {
    return dds::call(__func__, self, &dds::WaitSet::destroy);
}

DDS_ReturnCode_t DDS_WaitSet_attach_condition(DDS_WaitSet* self, DDS_Condition* condition) {
    return dds::call(__func__, self, &dds::WaitSet::attach, dds::required(condition));
}

DDS_ReturnCode_t DDS_WaitSet_detach_condition(DDS_WaitSet* self, DDS_Condition* condition) {
    return dds::call(__func__, self, &dds::WaitSet::detach, dds::required(condition));
}

DDS_ReturnCode_t DDS_WaitSet_wait(DDS_WaitSet* self, DDS_ConditionSeq* active,
                                  const DDS_Duration_t* timeout) {
    return dds::call(__func__, self, &dds::WaitSet::wait, dds::required("active", active),
                     dds::required("timeout", timeout));
}

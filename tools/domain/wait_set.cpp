#include "tools/domain/wait_set.hpp"

#include <algorithm>
#include <cstdint>
#include <thread>

namespace orvane::tools {

Status WaitSet::open() {
    interrupted_.reset(DDS_GuardCondition_new());
    wait_set_.reset(DDS_WaitSet_new());
    return interrupted_ && wait_set_ ? attach(DDS_GuardCondition_as_condition(interrupted_.get()))
                                     : Status::failed;
}

Status WaitSet::attach_data_of(DDS_DataReader* reader) {
    DDS_ReadCondition* arrived = DDS_DataReader_create_readcondition(
        reader, DDS_ANY_SAMPLE_STATE, DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE);
    return arrived != nullptr ? attach(DDS_ReadCondition_as_condition(arrived)) : Status::failed;
}

Status WaitSet::attach_statuses_of(DDS_Entity* entity, DDS_StatusMask statuses) {
    DDS_StatusCondition* changed = DDS_Entity_get_statuscondition(entity);
    return DDS_StatusCondition_set_enabled_statuses(changed, statuses) == DDS_RETCODE_OK
               ? attach(DDS_StatusCondition_as_condition(changed))
               : Status::failed;
}

Status WaitSet::attach(DDS_Condition* condition) {
    return DDS_WaitSet_attach_condition(wait_set_.get(), condition) == DDS_RETCODE_OK
               ? Status::ok
               : Status::failed;
}

void WaitSet::wait(std::chrono::milliseconds longest) {
    const auto count = std::max<std::int64_t>(longest.count(), 0);
    const DDS_Duration_t timeout{static_cast<DDS_Long>(count / 1000),
                                 static_cast<DDS_UnsignedLong>(count % 1000 * 1'000'000)};
    DDS_ConditionSeq active{};
    const DDS_ReturnCode_t result = DDS_WaitSet_wait(wait_set_.get(), &active, &timeout);
    DDS_ConditionSeq_finalize(&active);
    if (result != DDS_RETCODE_OK && result != DDS_RETCODE_TIMEOUT) {
        // A wait that cannot even begin must not make its loop a busy one.
        std::this_thread::sleep_for(std::min(longest, std::chrono::milliseconds{100}));
    }
}

void WaitSet::interrupt() {
    DDS_GuardCondition_set_trigger_value(interrupted_.get(), DDS_BOOLEAN_TRUE);
}

}  // namespace orvane::tools

#include "platform/dds/entity/status_condition.hpp"

#include "platform/dds/entity/entity.hpp"

namespace pexa::dds {

engine::EntityId StatusCondition::engine_id() const {
    return entity_.engine_id();
}

Status StatusCondition::set_enabled_statuses(DDS_StatusMask mask) {
    statuses_.store(mask);
    return entity_enabled();
}

Status StatusCondition::entity_enabled() const {
    const engine::EntityId id = engine_id();
    // The engine starts with all of them.
    if (id == engine::no_entity) {
        return Status::ok;
    }
    return engine::set_status_condition(id, statuses_.load() & entity_.statuses());
}

}  // namespace pexa::dds

namespace dds = pexa::dds;

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

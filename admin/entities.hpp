/// @file entities.hpp
/// @brief Creation and teardown of the logger's DDS entities.
#pragma once

#include "orvane/admin.h"
#include "platform/internal/record_members.hpp"

namespace orvane::admin {

/// The field as it is, and nothing for a record that is not there.
template <auto Field>
pexa::ValueOfMember<Field> field_of(const QEL_KX_DDSEntities* entities) noexcept {
    return entities != nullptr ? entities->*Field : pexa::ValueOfMember<Field>{};
}

/// @name Contracts: QEL_KX_DDSEntities_…
/// @{
QEL_KX_DDSEntities* create_entities(QEL_KX_Orvane* logger);
void destroy_entities(QEL_KX_DDSEntities* entities);
DDS_ReturnCode_t delete_contained_entities(QEL_KX_DDSEntities* entities);
void initialize_entities(QEL_KX_DDSEntities* entities);
/// @}

}  // namespace orvane::admin

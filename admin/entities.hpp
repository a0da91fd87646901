/// @file entities.hpp
/// @brief Creation and teardown of the logger's DDS entities.
#pragma once

#include "orvane/admin.h"

namespace orvane::admin {

/// @name Contracts: QEL_KX_DDSEntities_…
/// @{
[[nodiscard]] QEL_KX_DDSEntities* create_entities(QEL_KX_Orvane* logger);
void destroy_entities(QEL_KX_DDSEntities* entities);
DDS_ReturnCode_t delete_contained_entities(QEL_KX_DDSEntities* entities);
void initialize_entities(QEL_KX_DDSEntities* entities);
/// @}

}  // namespace orvane::admin

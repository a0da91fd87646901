/// @file statistics_entities.hpp
/// @brief The entities for publishing statistics, of loggers whose participant asks for that.
#pragma once

#include "orvane/admin.h"

namespace orvane::admin {

/// Makes the entities and begins to publish, if the participant has the property. Needs the
/// publisher and the writer of messages. A logger without statistics is better than none, so a
/// failure is only reported.
void create_statistics_entities(const QEL_KX_DDSEntities& entities);

/// Deletes what the deletion of the publisher has left.
void delete_statistics_topic(DDS_DomainParticipant* participant);

}  // namespace orvane::admin

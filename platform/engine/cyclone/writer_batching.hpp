/// @file writer_batching.hpp
/// @brief Writers that batch.
///
/// Cyclone 0.10.5 has a policy for it. In 0.10.2 it is a flag in the domain's configuration, which
/// Cyclone reads while it creates a writer. There the flag is set from the call that creates the
/// writer until Cyclone has read it. A writer that the application creates with Cyclone's own
/// interface in the same domain within these microseconds batches, too.
#pragma once

#include <dds/dds.h>
#include <dds/ddsi/ddsi_sertype.h>

#include "platform/engine/function_ref.hpp"

namespace pexa::engine::cyclone {

/// Creates a writer that batches.
///
/// @param type the registered type of the writer's topic
/// @param qos the QoS that @p create uses
/// @param create calls Cyclone
dds_entity_t create_batching(const ddsi_sertype* type, dds_qos_t* qos,
                             FunctionRef<dds_entity_t()> create);

/// To be called on the thread that creates a writer, when Cyclone knows whether it batches.
void end_batching_window();

}  // namespace pexa::engine::cyclone

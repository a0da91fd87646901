/// @file topics.hpp
/// @brief The logger's four topics: one row each, one routine for all.
#pragma once

#include <cstddef>

#include "core/outcome.hpp"
#include "orvane/admin.h"

namespace orvane::admin {

/// Order of the rows, and of QEL_KX_DDSEntities::createdTopics.
enum class TopicOf : std::size_t { log, state, command_request, command_response };

/// Looks the topic up in the participant; registers its type and creates it if it is not there. A
/// topic that existed is used as it is.
core::Outcome obtain_topic(QEL_KX_DDSEntities& entities, TopicOf which);

/// The logger's own view of the command requests; needs the request topic and the identity.
core::Outcome create_filtered_topic(QEL_KX_DDSEntities& entities);

}  // namespace orvane::admin

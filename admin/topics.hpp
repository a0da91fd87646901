/// @file topics.hpp
/// @brief The logger's topics: one row each, one routine for all.
#pragma once

#include <cstddef>

#include "core/outcome.hpp"
#include "orvane/admin.h"

namespace orvane::admin {

/// Order of the rows, and of QEL_KX_DDSEntities::createdTopics.
enum class TopicOf : std::size_t { log, state, command_request, command_response };

struct TopicRow {
    const char* name;
    const char* type_name;
    DDS_ReturnCode_t (*register_type)(DDS_DomainParticipant* participant, const char* type_name);
    const char* register_failure;
    const char* qos_failure;
    const char* create_failure;
};

/// Looks the topic up in the participant; registers its type and creates it if it is not there. A
/// topic that existed is used as it is.
/// @param created receives the topic if it did not exist
core::Outcome obtain_topic(const QEL_KX_DDSEntities& entities, const TopicRow& row,
                           DDS_Topic*& topic, DDS_Topic*& created);
/// One of the four that every logger has.
core::Outcome obtain_topic(QEL_KX_DDSEntities& entities, TopicOf which);

/// The logger's own view of the command requests; needs the request topic and the identity.
core::Outcome create_filtered_topic(QEL_KX_DDSEntities& entities);

}  // namespace orvane::admin

/// @file qos_owned_policies.hpp
/// @brief The operations of policies that own memory, and of those that the engine does not carry.
#pragma once

#include "platform/dds/qos/policies.hpp"

namespace pexa::dds {

extern const PolicyOperations user_data_operations;
extern const PolicyOperations topic_data_operations;
extern const PolicyOperations group_data_operations;
extern const PolicyOperations partition_operations;
extern const PolicyOperations entity_name_operations;
/// A property without value counts as one with an empty value; names are unique and not empty.
extern const PolicyOperations property_operations;
extern const PolicyOperations entity_factory_operations;
extern const PolicyOperations wire_protocol_operations;

}  // namespace pexa::dds

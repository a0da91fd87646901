/// @file enumerators.hpp
/// @brief The enumerations that policies consist of.
#pragma once

#include "platform/dds/qos/policy.hpp"
#include "platform/internal/enumerators.hpp"

namespace pexa::dds {

/// What the names of all enumerators of a type end in.
template <typename Kind>
constexpr std::nullptr_t enumerator_suffix = nullptr;
template <>
inline constexpr std::string_view enumerator_suffix<DDS_DurabilityQosPolicyKind> =
    "_DURABILITY_QOS";
template <>
inline constexpr std::string_view enumerator_suffix<DDS_HistoryQosPolicyKind> = "_HISTORY_QOS";
template <>
inline constexpr std::string_view enumerator_suffix<DDS_ReliabilityQosPolicyKind> =
    "_RELIABILITY_QOS";
template <>
inline constexpr std::string_view enumerator_suffix<DDS_OwnershipQosPolicyKind> = "_OWNERSHIP_QOS";
template <>
inline constexpr std::string_view enumerator_suffix<DDS_LivelinessQosPolicyKind> =
    "_LIVELINESS_QOS";
template <>
inline constexpr std::string_view enumerator_suffix<DDS_PresentationQosPolicyAccessScopeKind> =
    "_PRESENTATION_QOS";
template <>
inline constexpr std::string_view enumerator_suffix<DDS_DestinationOrderQosPolicyKind> =
    "_DESTINATIONORDER_QOS";

template <typename Kind>
inline constexpr Enumeration enumeration_of{enumerator_suffix<Kind>, enumerator_names<Kind>};

}  // namespace pexa::dds

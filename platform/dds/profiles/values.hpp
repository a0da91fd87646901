/// @file profile_values.hpp
/// @brief Policy values as profile documents write them.
///
/// Each read() stores the value of an element or adds a fault; each copy() puts a value over
/// another one and returns false without memory. What they allocate for themselves may throw
/// std::bad_alloc.
#pragma once

#include "pexa/qos.h"
#include "platform/dds/profiles/elements.hpp"

namespace pexa::dds {

/// How values of a type are read and copied.
template <typename Value>
struct ProfileValue;

/// An enumerator by its name, with or without "DDS_" and the suffix of its type.
///
/// @param names by number, without suffix
[[nodiscard]] std::optional<int> read_enumerator(xml::Parser& faults, const Element& element,
                                                 std::span<const std::string_view> names,
                                                 std::string_view suffix);

/// The names of an enumeration by number.
template <typename Kind>
struct Enumerators;

template <>
struct Enumerators<DDS_DurabilityQosPolicyKind> {
    static constexpr std::string_view suffix = "_DURABILITY_QOS";
    static constexpr std::string_view names[] = {"VOLATILE", "TRANSIENT_LOCAL", "TRANSIENT",
                                                 "PERSISTENT"};
};
template <>
struct Enumerators<DDS_HistoryQosPolicyKind> {
    static constexpr std::string_view suffix = "_HISTORY_QOS";
    static constexpr std::string_view names[] = {"KEEP_LAST", "KEEP_ALL"};
};
template <>
struct Enumerators<DDS_ReliabilityQosPolicyKind> {
    static constexpr std::string_view suffix = "_RELIABILITY_QOS";
    static constexpr std::string_view names[] = {"BEST_EFFORT", "RELIABLE"};
};
template <>
struct Enumerators<DDS_OwnershipQosPolicyKind> {
    static constexpr std::string_view suffix = "_OWNERSHIP_QOS";
    static constexpr std::string_view names[] = {"SHARED", "EXCLUSIVE"};
};
template <>
struct Enumerators<DDS_LivelinessQosPolicyKind> {
    static constexpr std::string_view suffix = "_LIVELINESS_QOS";
    static constexpr std::string_view names[] = {"AUTOMATIC", "MANUAL_BY_PARTICIPANT",
                                                 "MANUAL_BY_TOPIC"};
};
template <>
struct Enumerators<DDS_PresentationQosPolicyAccessScopeKind> {
    static constexpr std::string_view suffix = "_PRESENTATION_QOS";
    static constexpr std::string_view names[] = {"INSTANCE", "TOPIC", "GROUP"};
};
template <>
struct Enumerators<DDS_DestinationOrderQosPolicyKind> {
    static constexpr std::string_view suffix = "_DESTINATIONORDER_QOS";
    static constexpr std::string_view names[] = {"BY_RECEPTION_TIMESTAMP", "BY_SOURCE_TIMESTAMP"};
};

/// A value that is copied by assignment.
template <typename Value>
struct PlainProfileValue {
    static bool copy(Value& to, const Value& from) {
        to = from;
        return true;
    }
};

/// An enumeration.
template <typename Kind>
struct ProfileValue : PlainProfileValue<Kind> {
    static void read(xml::Parser& faults, const Element& element, Kind& value) {
        using Names = Enumerators<Kind>;
        if (const auto number = read_enumerator(faults, element, Names::names, Names::suffix)) {
            value = static_cast<Kind>(*number);
        }
    }
};

template <>
struct ProfileValue<DDS_Boolean> : PlainProfileValue<DDS_Boolean> {
    static void read(xml::Parser& faults, const Element& element, DDS_Boolean& value);
};
/// A whole number.
template <>
struct ProfileValue<DDS_Long> : PlainProfileValue<DDS_Long> {
    static void read(xml::Parser& faults, const Element& element, DDS_Long& value);
};
/// A number or LENGTH_UNLIMITED.
struct LimitProfileValue : PlainProfileValue<DDS_Long> {
    static void read(xml::Parser& faults, const Element& element, DDS_Long& value);
};
/// `sec` and `nanosec`, of which a missing one is 0, or DURATION_INFINITY for the whole.
template <>
struct ProfileValue<DDS_Duration_t> : PlainProfileValue<DDS_Duration_t> {
    static void read(xml::Parser& faults, const Element& element, DDS_Duration_t& value);
};
/// An owned text.
template <>
struct ProfileValue<char*> {
    static void read(xml::Parser& faults, const Element& element, char*& value);
    static bool copy(char*& to, char* const& from);
};
/// Base64.
template <>
struct ProfileValue<DDS_OctetSeq> {
    static void read(xml::Parser& faults, const Element& element, DDS_OctetSeq& value);
    static bool copy(DDS_OctetSeq& to, const DDS_OctetSeq& from);
};
/// `element` for each text.
template <>
struct ProfileValue<DDS_StringSeq> {
    static void read(xml::Parser& faults, const Element& element, DDS_StringSeq& value);
    static bool copy(DDS_StringSeq& to, const DDS_StringSeq& from);
};
/// `element` with `name` and `value` for each property. Copying adds to the properties that are
/// there, and replaces those of the same name.
template <>
struct ProfileValue<DDS_PropertySeq> {
    static void read(xml::Parser& faults, const Element& element, DDS_PropertySeq& value);
    static bool copy(DDS_PropertySeq& to, const DDS_PropertySeq& from);
};

}  // namespace pexa::dds

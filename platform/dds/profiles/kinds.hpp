/// @file kinds.hpp
/// @brief The kinds of entities that a profile has elements for.
#pragma once

#include <string_view>

#include "pexa/qos.h"

namespace pexa::dds {

/// The element of a kind in profiles.
template <typename Record>
constexpr std::string_view element_of_kind = {};
template <>
inline constexpr std::string_view element_of_kind<DDS_DomainParticipantQos> =
    "domain_participant_qos";
template <>
inline constexpr std::string_view element_of_kind<DDS_TopicQos> = "topic_qos";
template <>
inline constexpr std::string_view element_of_kind<DDS_PublisherQos> = "publisher_qos";
template <>
inline constexpr std::string_view element_of_kind<DDS_SubscriberQos> = "subscriber_qos";
template <>
inline constexpr std::string_view element_of_kind<DDS_DataWriterQos> = "datawriter_qos";
template <>
inline constexpr std::string_view element_of_kind<DDS_DataReaderQos> = "datareader_qos";

/// Whether the elements of a kind may be for some topics only.
template <typename Record>
constexpr bool is_of_topics = false;
template <>
inline constexpr bool is_of_topics<DDS_TopicQos> = true;
template <>
inline constexpr bool is_of_topics<DDS_DataWriterQos> = true;
template <>
inline constexpr bool is_of_topics<DDS_DataReaderQos> = true;

/// Calls a function template with the record of each kind.
template <typename Function>
void for_each_kind(Function function) {
    function.template operator()<DDS_DomainParticipantQos>();
    function.template operator()<DDS_TopicQos>();
    function.template operator()<DDS_PublisherQos>();
    function.template operator()<DDS_SubscriberQos>();
    function.template operator()<DDS_DataWriterQos>();
    function.template operator()<DDS_DataReaderQos>();
}

}  // namespace pexa::dds

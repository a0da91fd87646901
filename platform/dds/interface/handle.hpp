/// @file handle.hpp
/// @brief Handles of the C interface and the objects behind them.
///
/// A handle is the address of its object under an incomplete type. It leads back only to exactly
/// the class named here: the handles of a base class are made by converting the object first.
#pragma once

#include <type_traits>

#include "pexa/publication.h"
#include "pexa/subscription.h"

namespace pexa::dds {

class Condition;
class DataReader;
class DataWriter;
class Entity;
class Factory;
class FilteredTopic;
class GuardCondition;
class Participant;
class Publisher;
class ReadCondition;
class StatusCondition;
class Subscriber;
class Topic;
class TopicDescription;
class WaitSet;

/// A kind of object: its handle type, and the name of such an argument in reports.
template <typename HandleType>
struct HandleTraits {};

template <>
struct HandleTraits<DDS_Entity> {
    using Object = Entity;
    static constexpr const char* argument = "entity";
};
template <>
struct HandleTraits<DDS_DomainParticipantFactory> {
    using Object = Factory;
    static constexpr const char* argument = "factory";
};
template <>
struct HandleTraits<DDS_DomainParticipant> {
    using Object = Participant;
    static constexpr const char* argument = "participant";
};
template <>
struct HandleTraits<DDS_TopicDescription> {
    using Object = TopicDescription;
    static constexpr const char* argument = "topic description";
};
template <>
struct HandleTraits<DDS_Topic> {
    using Object = Topic;
    static constexpr const char* argument = "topic";
};
template <>
struct HandleTraits<DDS_ContentFilteredTopic> {
    using Object = FilteredTopic;
    static constexpr const char* argument = "content-filtered topic";
};
template <>
struct HandleTraits<DDS_Publisher> {
    using Object = Publisher;
    static constexpr const char* argument = "publisher";
};
template <>
struct HandleTraits<DDS_Subscriber> {
    using Object = Subscriber;
    static constexpr const char* argument = "subscriber";
};
template <>
struct HandleTraits<DDS_DataWriter> {
    using Object = DataWriter;
    static constexpr const char* argument = "writer";
};
template <>
struct HandleTraits<DDS_DataReader> {
    using Object = DataReader;
    static constexpr const char* argument = "reader";
};
template <>
struct HandleTraits<DDS_Condition> {
    using Object = Condition;
    static constexpr const char* argument = "condition";
};
template <>
struct HandleTraits<DDS_ReadCondition> {
    using Object = ReadCondition;
    static constexpr const char* argument = "read condition";
};
template <>
struct HandleTraits<DDS_GuardCondition> {
    using Object = GuardCondition;
    static constexpr const char* argument = "guard condition";
};
template <>
struct HandleTraits<DDS_StatusCondition> {
    using Object = StatusCondition;
    static constexpr const char* argument = "status condition";
};
template <>
struct HandleTraits<DDS_WaitSet> {
    using Object = WaitSet;
    static constexpr const char* argument = "wait set";
};

/// Whether T is a handle type.
template <typename T>
concept HandleType = requires {
    typename HandleTraits<T>::Object;
};

/// Whether T is a class that has handles; it names them as T::Handle.
template <typename T>
concept ObjectType = HandleType<typename T::Handle> &&
    std::is_same_v<typename HandleTraits<typename T::Handle>::Object, T>;

/// @return the object behind a handle, NULL for NULL.
template <HandleType Handle>
typename HandleTraits<Handle>::Object* object_of(Handle* handle) {
    return reinterpret_cast<typename HandleTraits<Handle>::Object*>(handle);
}

/// @return the handle of an object, NULL for NULL.
template <ObjectType Object>
typename Object::Handle* handle_of(Object* object) {
    return reinterpret_cast<typename Object::Handle*>(object);
}

}  // namespace pexa::dds

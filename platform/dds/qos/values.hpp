/// @file values.hpp
/// @brief The types of policy values: how a value is copied, compared and checked, and how it
/// becomes a value of the engine's QoS and back.
///
/// A scalar has a plain form, in which values of equal meaning are equal. Other types own memory.
#pragma once

#include <cstring>

#include "platform/dds/qos/duration.hpp"
#include "platform/dds/qos/enumerators.hpp"
#include "platform/internal/number_of.hpp"

namespace pexa::dds {

/// An enumeration of the C interface as a number, because a caller may have stored any number.
template <typename Value>
struct ScalarValue {
    static_assert(std::is_enum_v<Value>);
    static constexpr ValueKind kind = ValueKind::enumerator;
    static constexpr Enumeration enumeration = enumeration_of<Value>;
    static int plain(const Value& value) { return number_of(value); }
    template <typename EngineKind>
    static Value from_plain(EngineKind value) {
        return static_cast<Value>(value);
    }
    static QosFault fault(const Value& value) {
        const int number = plain(value);
        const bool is_known =
            number >= 0 && static_cast<std::size_t>(number) < enumeration.names.size();
        return is_known ? QosFault() : QosFault("%d is no enumerator", number);
    }
};

template <>
struct ScalarValue<DDS_Boolean> {
    static constexpr ValueKind kind = ValueKind::boolean;
    static constexpr Enumeration enumeration{};
    static bool plain(DDS_Boolean value) { return value != 0; }
    static DDS_Boolean from_plain(bool value) { return value; }
    static QosFault fault(DDS_Boolean) { return {}; }
};

template <typename Number>
struct NumberValue {
    static constexpr ValueKind kind = ValueKind::number;
    static constexpr Enumeration enumeration{};
    static Number plain(Number value) { return value; }
    static Number from_plain(Number value) { return value; }
    static QosFault fault(Number) { return {}; }
};
template <>
struct ScalarValue<DDS_Long> : NumberValue<DDS_Long> {};
template <>
struct ScalarValue<DDS_UnsignedLong> : NumberValue<DDS_UnsignedLong> {};

struct LimitValue : NumberValue<DDS_Long> {
    static constexpr ValueKind kind = ValueKind::limit;
    static QosFault fault(DDS_Long value) {
        const bool is_limit = value >= 1 || value == DDS_LENGTH_UNLIMITED;
        return is_limit ? QosFault() : QosFault("%d is neither positive nor unlimited", value);
    }
};

template <>
struct ScalarValue<DDS_Duration_t> {
    static constexpr ValueKind kind = ValueKind::duration;
    static constexpr Enumeration enumeration{};
    static engine::Nanoseconds plain(const DDS_Duration_t& value) { return to_nanoseconds(value); }
    static DDS_Duration_t from_plain(engine::Nanoseconds value) { return to_duration(value); }
    static QosFault fault(const DDS_Duration_t& value) {
        return is_valid(value) ? QosFault()
                               : QosFault("%d s %u ns is no duration", value.sec, value.nanosec);
    }
};

/// The table of a scalar.
template <typename Value, typename Scalar>
inline constexpr ValueType scalar_type{Scalar::kind, Scalar::enumeration,
                                       [](void* value, const void* from) {
                                           // Not an assignment: a caller may have stored a number
                                           // that is no value of the enumeration.
                                           std::memcpy(value, from, sizeof(Value));
                                           return Status::ok;
                                       },
                                       [](void*) {},
                                       [](const void* left, const void* right) {
                                           return Scalar::plain(*static_cast<const Value*>(left)) ==
                                                  Scalar::plain(*static_cast<const Value*>(right));
                                       }};

/// The operations of a type that owns memory. A counterpart that holds nothing is left out.
template <typename Value>
struct OwnedValue;

/// NULL counts as the empty string, but has no counterpart.
template <>
struct OwnedValue<char*> {
    static const ValueType type;
    static void initialize(char*& value) { value = nullptr; }
    static QosFault fault(char* const&) { return {}; }
    static void to_engine(char* const& value, std::optional<std::string>& counterpart);
    static Status from_engine(const std::optional<std::string>& counterpart, char*& value);
};
template <>
struct OwnedValue<DDS_OctetSeq> {
    static const ValueType type;
    static void initialize(DDS_OctetSeq& value) { DDS_OctetSeq_initialize(&value); }
    static QosFault fault(const DDS_OctetSeq&) { return {}; }
    static void to_engine(const DDS_OctetSeq& value, std::optional<engine::Bytes>& counterpart);
    static Status from_engine(const std::optional<engine::Bytes>& counterpart, DDS_OctetSeq& value);
};
template <>
struct OwnedValue<DDS_StringSeq> {
    using Strings = std::vector<std::string>;
    static const ValueType type;
    static void initialize(DDS_StringSeq& value) { DDS_StringSeq_initialize(&value); }
    static QosFault fault(const DDS_StringSeq&) { return {}; }
    static void to_engine(const DDS_StringSeq& value, std::optional<Strings>& counterpart);
    static Status from_engine(const std::optional<Strings>& counterpart, DDS_StringSeq& value);
};
/// A property without value counts as one with an empty value. Names are unique and not empty.
template <>
struct OwnedValue<DDS_PropertySeq> {
    using Pairs = std::vector<std::pair<std::string, std::string>>;
    static const ValueType type;
    static void initialize(DDS_PropertySeq& value) { DDS_PropertySeq_initialize(&value); }
    static QosFault fault(const DDS_PropertySeq& value);
    static void to_engine(const DDS_PropertySeq& value, Pairs& counterpart);
    static Status from_engine(const Pairs& counterpart, DDS_PropertySeq& value);
};

}  // namespace pexa::dds

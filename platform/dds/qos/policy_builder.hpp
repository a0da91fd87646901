/// @file policy_builder.hpp
/// @brief Makes the tables of policies at compile time. Only the file with the tables needs it.
#pragma once

#include <array>

#include "platform/dds/qos/values.hpp"
#include "platform/internal/record_members.hpp"

namespace pexa::dds {

/// A row under construction, which still knows its member.
template <auto Pointer>
struct MemberRow {
    static constexpr auto pointer = Pointer;
    PolicyMember row;

    /// Replaces the check of the member, for one that depends on other members.
    constexpr MemberRow checked_by(QosFault (*fault)(const void* policy)) const {
        MemberRow checked = *this;
        checked.row.fault = fault;
        return checked;
    }
};

template <auto Pointer>
void* locate_member(void* record) {
    return &(static_cast<RecordOfMember<Pointer>*>(record)->*Pointer);
}

template <auto Pointer>
const ValueOfMember<Pointer>& value_of(const void* record) {
    return static_cast<const RecordOfMember<Pointer>*>(record)->*Pointer;
}

/// A member of an engine's value, or the value itself for an empty path.
template <typename Value>
constexpr auto& follow(Value& value) {
    return value;
}
template <typename Value, typename First, typename... Others>
constexpr auto& follow(Value& value, First first, Others... others) {
    return follow(value.*first, others...);
}

/// A scalar without a counterpart in the engine's QoS.
template <auto Pointer, auto Initial, typename Scalar = ScalarValue<ValueOfMember<Pointer>>>
constexpr MemberRow<Pointer> own_member(const char* name) {
    return {
        {name, &scalar_type<ValueOfMember<Pointer>, Scalar>, locate_member<Pointer>,
         [](void* policy) { static_cast<RecordOfMember<Pointer>*>(policy)->*Pointer = Initial; },
         [](const void* policy) { return Scalar::fault(value_of<Pointer>(policy)); },
         [](const void*, engine::Qos&) {}, [](const engine::Qos&, void*) { return Status::ok; }}};
}

/// A scalar whose counterpart is the engine's policy `Slot`, or the member of it to which the
/// `Path` leads.
template <typename Scalar, auto Pointer, auto Initial, auto Slot, auto... Path>
constexpr MemberRow<Pointer> scalar_member(const char* name) {
    MemberRow<Pointer> member = own_member<Pointer, Initial, Scalar>(name);
    member.row.to_engine = [](const void* policy, engine::Qos& qos) {
        auto& slot = qos.*Slot;
        auto& counterpart = follow(slot ? *slot : slot.emplace(), Path...);
        counterpart = static_cast<std::remove_reference_t<decltype(counterpart)>>(
            Scalar::plain(value_of<Pointer>(policy)));
    };
    member.row.from_engine = [](const engine::Qos& qos, void* policy) {
        if (const auto& slot = qos.*Slot) {
            static_cast<RecordOfMember<Pointer>*>(policy)->*Pointer =
                Scalar::from_plain(follow(*slot, Path...));
        }
        return Status::ok;
    };
    return member;
}

template <auto Pointer, auto Initial, auto Slot, auto... Path>
constexpr MemberRow<Pointer> member(const char* name) {
    return scalar_member<ScalarValue<ValueOfMember<Pointer>>, Pointer, Initial, Slot, Path...>(
        name);
}

/// A number that may be unlimited, and is at first.
template <auto Pointer, auto Slot, auto... Path>
constexpr MemberRow<Pointer> limit(const char* name) {
    return scalar_member<LimitValue, Pointer, DDS_LENGTH_UNLIMITED, Slot, Path...>(name);
}

/// A member that owns memory and is empty at first.
template <auto Pointer, auto Slot>
constexpr MemberRow<Pointer> owned_member(const char* name) {
    using Owned = OwnedValue<ValueOfMember<Pointer>>;
    return {{name, &Owned::type, locate_member<Pointer>,
             [](void* policy) {
                 Owned::initialize(static_cast<RecordOfMember<Pointer>*>(policy)->*Pointer);
             },
             [](const void* policy) { return Owned::fault(value_of<Pointer>(policy)); },
             [](const void* policy, engine::Qos& qos) {
                 Owned::to_engine(value_of<Pointer>(policy), qos.*Slot);
             },
             [](const engine::Qos& qos, void* policy) {
                 return Owned::from_engine(qos.*Slot,
                                           static_cast<RecordOfMember<Pointer>*>(policy)->*Pointer);
             }}};
}

inline QosFault no_contradiction(const void*) {
    return {};
}

/// The table of a policy with its rows. A member without its row does not compile.
template <typename First, typename... Others>
struct PolicyRows {
    using Record = RecordOfMember<First::pointer>;

    constexpr PolicyRows(Change when, First first, Others... others)
        : change(when), members{first.row, others.row...} {
        static_assert(covers_record<Record, First::pointer, Others::pointer...>);
    }

    constexpr PolicyRows contradicted_by(QosFault (*function)(const void* policy)) const {
        PolicyRows rows = *this;
        rows.contradiction = function;
        return rows;
    }

    Change change;
    std::array<PolicyMember, 1 + sizeof...(Others)> members;
    QosFault (*contradiction)(const void* policy) = no_contradiction;
};

}  // namespace pexa::dds

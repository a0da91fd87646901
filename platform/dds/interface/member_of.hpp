/// @file member_of.hpp
/// @brief What a pointer to member says of record and member.
#pragma once

namespace pexa::dds {

namespace member_of_details {
template <typename Member>
struct Parts;
template <typename RecordType, typename MemberType>
struct Parts<MemberType RecordType::*> {
    using Record = RecordType;
    using Type = MemberType;
};
}  // namespace member_of_details

template <auto Member>
using MemberOf = member_of_details::Parts<decltype(Member)>;

}  // namespace pexa::dds

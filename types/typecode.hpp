/**
 * @file typecode.hpp
 * @brief Type codes, made of the tables at compile time.
 *
 * They are constants, so any thread may ask for them at any time.
 */
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "types/table.hpp"

namespace orvane::types {

constexpr DDS_TypeCodeMember member_code(const TypeTable& table, std::size_t index) {
    DDS_TypeCodeMember code{.name = nullptr,
                            .id = static_cast<DDS_Long>(index),
                            .type = nullptr,
                            .flags = DDS_TYPECODE_NONKEY_REQUIRED_MEMBER,
                            .visibility = DDS_PUBLIC_MEMBER,
                            .label = 0};
    if (table.kind == TypeKind::Enumeration) {
        code.name = table.enumerators[index];
        return code;
    }
    const MemberDescriptor& row = table.rows[index];
    code.name = row.name;
    code.type = row.code;
    code.flags = row.is_key ? DDS_TYPECODE_KEY_MEMBER : DDS_TYPECODE_NONKEY_REQUIRED_MEMBER;
    if (table.kind == TypeKind::Union) {
        code.label = static_cast<DDS_Long>(index) - 1;
    }
    return code;
}

/** The discriminator of a union is no member of its type code. */
constexpr std::size_t first_coded_member(const TypeTable& table) {
    return table.kind == TypeKind::Union ? 1 : 0;
}

constexpr std::size_t coded_members(const TypeTable& table) {
    return table.kind == TypeKind::Enumeration ? table.enumerators.size()
                                               : table.rows.size() - first_coded_member(table);
}

template <std::size_t Count>
constexpr std::array<DDS_TypeCodeMember, Count> member_codes(const TypeTable& table) {
    std::array<DDS_TypeCodeMember, Count> codes{};
    const std::size_t first = first_coded_member(table);
    for (std::size_t i = 0; i < Count; ++i) {
        codes[i] = member_code(table, first + i);
    }
    return codes;
}

constexpr DDS_TypeCode type_code(const TypeTable& table, DDS_TypeCodeMember* members) {
    constexpr std::array kinds{DDS_TK_ENUM, DDS_TK_STRUCT, DDS_TK_UNION};
    return {.kind = kinds[static_cast<std::size_t>(table.kind)],
            .extensibility = table.extensibility,
            .name = table.name,
            .bound = 0,
            .element = first_coded_member(table) == 1 ? table.rows[0].code : nullptr,
            .memberCount = static_cast<DDS_UnsignedLong>(coded_members(table)),
            .members = members};
}

constexpr DDS_TypeCode collection_code(DDS_TCKind kind, std::uint32_t bound,
                                       const DDS_TypeCode* element) {
    return {.kind = kind,
            .extensibility = DDS_FINAL_EXTENSIBILITY,
            .name = nullptr,
            .bound = bound,
            .element = element,
            .memberCount = 0,
            .members = nullptr};
}

template <std::uint32_t Bound>
inline constinit const DDS_TypeCode string_code = collection_code(DDS_TK_STRING, Bound, nullptr);
template <typename Element, std::uint32_t Count>
inline constinit const DDS_TypeCode array_code = collection_code(DDS_TK_ARRAY, Count,
                                                                 &Description<Element>::code);
template <typename Element, std::uint32_t Bound>
inline constinit const DDS_TypeCode sequence_code = collection_code(DDS_TK_SEQUENCE, Bound,
                                                                    &Description<Element>::code);

}  // namespace orvane::types

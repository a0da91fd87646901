/**
 * @file typecode.hpp
 * @brief Type codes, made of the tables at compile time.
 *
 * They are complete before any code runs, so that the first calls of get_typecode may be
 * concurrent.
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
    if (table.category == Category::Enumeration) {
        code.name = table.enumerators[index];
        return code;
    }
    const Member& row = table.rows[index];
    code.name = row.name;
    code.type = row.code;
    code.flags = row.is_key ? DDS_TYPECODE_KEY_MEMBER : DDS_TYPECODE_NONKEY_REQUIRED_MEMBER;
    if (table.category == Category::Union) {
        code.label = static_cast<DDS_Long>(index) - 1;
    }
    return code;
}

/** The discriminator of a union is no member of its type code. */
constexpr std::size_t first_coded_member(const TypeTable& table) {
    return table.category == Category::Union ? 1 : 0;
}

constexpr std::array<DDS_TypeCodeMember, table_capacity> member_codes(const TypeTable& table) {
    std::array<DDS_TypeCodeMember, table_capacity> codes{};
    const std::size_t first = first_coded_member(table);
    for (std::size_t i = first; i < table.row_count; ++i) {
        codes[i - first] = member_code(table, i);
    }
    return codes;
}

constexpr DDS_TypeCode type_code(const TypeTable& table, DDS_TypeCodeMember* members) {
    constexpr std::array kinds{DDS_TK_ENUM, DDS_TK_STRUCT, DDS_TK_UNION};
    const std::size_t first = first_coded_member(table);
    return {.kind = kinds[static_cast<std::size_t>(table.category)],
            .extensibility = table.extensibility,
            .name = table.name,
            .bound = 0,
            .element = first == 1 ? table.rows[0].code : nullptr,
            .memberCount = table.row_count - static_cast<DDS_UnsignedLong>(first),
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

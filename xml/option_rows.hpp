/// @file option_rows.hpp
/// @brief Makes the rows of the option table at compile time.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <tuple>
#include <utility>

#include "platform/internal/record_members.hpp"
#include "xml/option_table.hpp"

namespace orvane::xml {

/// A row under construction: it still knows which field it stands for.
template <auto Field>
struct Row {
    Option<pexa::RecordOfMember<Field>> option;
};

/// An option with an element. @tparam Value how the element is read and written, see values.hpp
template <auto Field, typename Value>
consteval Row<Field> row(const char* name) {
    return {{{.name = name}, Value::template read<Field>, Value::template write<Field>}};
}

/// An option that only the application sets.
template <auto Field>
consteval Row<Field> row_without_element(const char* name) {
    return {{{.name = name}, nullptr, nullptr}};
}

/// True when the fields are all members of the record, each once; does not compile otherwise.
template <typename Record, auto... Fields>
consteval bool covers_in_any_order() {
    constexpr std::tuple fields{Fields...};
    constexpr auto order = [] {
        constexpr std::array offsets{pexa::offset_of_member<Fields>...};
        std::array<std::size_t, sizeof...(Fields)> positions{};
        for (std::size_t i = 0; i < positions.size(); ++i) {
            positions[i] = i;
        }
        std::sort(positions.begin(), positions.end(),
                  [&](std::size_t a, std::size_t b) { return offsets[a] < offsets[b]; });
        return positions;
    }();
    return [&]<std::size_t... Position>(std::index_sequence<Position...>) {
        return pexa::covers_record<Record, std::get<order[Position]>(fields)...>;
    }
    (std::make_index_sequence<sizeof...(Fields)>());
}

/// @return whether each element has a number, and no two have the same.
template <typename... Tables>
consteval bool has_distinct_numbers(const Tables&... tables) {
    // An element without a number of its own would never be read.
    std::uint64_t used = std::uint64_t{1} << QEL_KX_XML_ELEMENT_NONE;
    bool distinct = true;
    const auto use = [&](const auto& option) {
        if (option.description.has_element()) {
            const std::uint64_t bit = std::uint64_t{1} << option.description.number;
            distinct = distinct && (used & bit) == 0;
            used |= bit;
        }
    };
    (std::for_each(tables.begin(), tables.end(), use), ...);
    return distinct;
}

/// A row for every member of the record, with the description at the same place.
template <typename Record, std::size_t Count, auto... Fields>
consteval auto table(const std::array<OptionDescription, Count>& descriptions,
                     Row<Fields>... rows) {
    static_assert(covers_in_any_order<Record, Fields...>());
    static_assert(sizeof...(Fields) == Count, "an option without a description");
    std::array options{rows.option...};
    for (std::size_t i = 0; i < Count; ++i) {
        const bool fits = std::string_view(options[i].description.name) == descriptions[i].name &&
                          (options[i].read != nullptr) == descriptions[i].has_element();
        options.at(fits ? i : Count).description = descriptions[i];
    }
    return options;
}

}  // namespace orvane::xml

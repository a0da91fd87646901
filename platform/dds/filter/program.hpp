/// @file program.hpp
/// @brief A compiled filter expression: the fields that it needs, and the comparisons of them.
///
/// All capacities are fixed. So compiling allocates the program and nothing else, and running it
/// allocates nothing.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "pexa/typecode.h"

namespace pexa::dds {

/// Most characters of an expression, and of a parameter.
inline constexpr std::size_t filter_text_limit = 16384;
/// Most brackets around one another.
inline constexpr int filter_nesting_limit = 64;
inline constexpr std::size_t filter_step_limit = 256;
inline constexpr std::size_t filter_constant_limit = 256;
inline constexpr std::size_t filter_field_limit = 64;
inline constexpr std::size_t filter_node_limit = 128;

/// A number or a text, by the type of its field.
struct FilterValue {
    std::int64_t number = 0;
    std::string_view text;
};

/// The values of the fields that an expression names, as a sample has them.
using FilterFields = std::array<FilterValue, filter_field_limit>;

inline constexpr std::int16_t no_index = -1;

/// A member that an expression names, or that contains such a member. The nodes form a tree that
/// lies over the type: a value is decoded only where the tree has a node.
struct FieldNode {
    DDS_Long id = 0;  ///< of the member in its parent; a union's discriminator has 0
    const DDS_TypeCode* type = nullptr;
    std::int16_t field = no_index;  ///< where its value goes
    std::int16_t first_child = no_index;
    std::int16_t next_sibling = no_index;
};

enum class Comparison : std::uint8_t {
    equal,
    not_equal,
    less,
    less_equal,
    greater,
    greater_equal,
    like,
};

/// @name Where a step leads
/// The index of another step, or an end. While an expression is parsed, the ends of a part stand
/// for the steps that will follow it when it holds, and when it does not hold.
/// @{
using StepIndex = std::uint16_t;
inline constexpr StepIndex holds = 0xffff;
inline constexpr StepIndex fails = 0xfffe;
/// @}

/// An operand: the index of a field, or the complement of the index of a constant.
using OperandIndex = std::int16_t;

/// A comparison, and the steps that follow it. AND, OR and NOT consist of nothing else.
struct Step {
    Comparison comparison = Comparison::equal;
    bool text = false;
    OperandIndex left = 0;
    OperandIndex right = 0;
    StepIndex on_true = holds;
    StepIndex on_false = fails;
};

struct FilterProgram {
    std::array<Step, filter_step_limit> steps;
    std::array<FilterValue, filter_constant_limit> constants;
    std::array<FieldNode, filter_node_limit> nodes;  ///< the first one is the sample itself
    std::size_t step_count = 0;
    std::size_t constant_count = 0;
    std::size_t field_count = 0;
    std::size_t node_count = 0;

    /// @return the child of a node for a member, or no_index.
    std::int16_t child_of(std::int16_t node, DDS_Long member_id) const {
        if (node == no_index) {
            return no_index;
        }
        std::int16_t child = nodes[static_cast<std::size_t>(node)].first_child;
        while (child != no_index && nodes[static_cast<std::size_t>(child)].id != member_id) {
            child = nodes[static_cast<std::size_t>(child)].next_sibling;
        }
        return child;
    }

    /// @return whether the expression holds for these values.
    bool run(const FilterFields& fields) const;
};

}  // namespace pexa::dds

#include "platform/dds/filter/program.hpp"

#include <compare>

#include "platform/dds/interface/wildcard.hpp"

namespace pexa::dds {
namespace {

bool holds_for(Comparison comparison, std::strong_ordering order) {
    switch (comparison) {
        case Comparison::equal:
            return std::is_eq(order);
        case Comparison::not_equal:
            return std::is_neq(order);
        case Comparison::less:
            return std::is_lt(order);
        case Comparison::less_equal:
            return std::is_lteq(order);
        case Comparison::greater:
            return std::is_gt(order);
        case Comparison::greater_equal:
            return std::is_gteq(order);
        case Comparison::like:
            break;
    }
    return false;
}

bool holds_for(const Step& step, const FilterValue& left, const FilterValue& right) {
    if (step.comparison == Comparison::like) {
        return matches(left.text, right.text, {'%', '_'});
    }
    return holds_for(step.comparison,
                     step.text ? left.text <=> right.text : left.number <=> right.number);
}

}  // namespace

bool FilterProgram::run(const FilterFields& fields) const {
    const auto operand = [&](OperandIndex index) -> const FilterValue& {
        const int position = index >= 0 ? index : ~index;
        const auto offset = static_cast<std::size_t>(position);
        return index >= 0 ? fields[offset] : constants[offset];
    };
    // Each step leads forward only, so this ends.
    StepIndex next = 0;
    while (next < fails) {
        const Step& step = steps[next];
        next =
            holds_for(step, operand(step.left), operand(step.right)) ? step.on_true : step.on_false;
    }
    return next == holds;
}

}  // namespace pexa::dds

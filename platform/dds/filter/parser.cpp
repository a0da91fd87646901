#include "platform/dds/filter/parser.hpp"

#include <optional>

#include "platform/dds/filter/field_path.hpp"

namespace pexa::dds {
namespace {

std::optional<Comparison> comparison_of(SqlTokenKind kind) {
    switch (kind) {
        case SqlTokenKind::equal:
            return Comparison::equal;
        case SqlTokenKind::not_equal:
            return Comparison::not_equal;
        case SqlTokenKind::less:
            return Comparison::less;
        case SqlTokenKind::less_equal:
            return Comparison::less_equal;
        case SqlTokenKind::greater:
            return Comparison::greater;
        case SqlTokenKind::greater_equal:
            return Comparison::greater_equal;
        case SqlTokenKind::end:
        case SqlTokenKind::invalid:
        case SqlTokenKind::name:
        case SqlTokenKind::integer:
        case SqlTokenKind::text:
        case SqlTokenKind::parameter:
        case SqlTokenKind::open_bracket:
        case SqlTokenKind::close_bracket:
        case SqlTokenKind::keyword_and:
        case SqlTokenKind::keyword_or:
        case SqlTokenKind::keyword_not:
        case SqlTokenKind::keyword_between:
        case SqlTokenKind::keyword_like:
            break;
    }
    return std::nullopt;
}

bool is_number(const DDS_TypeCode& type) {
    return type.kind == DDS_TK_LONG || type.kind == DDS_TK_ENUM;
}

// All numbers can be compared, but not the enumerators of two enumerations.
bool are_comparable(const DDS_TypeCode& left, const DDS_TypeCode& right) {
    if (left.kind == DDS_TK_ENUM && right.kind == DDS_TK_ENUM) {
        return &left == &right;
    }
    return is_number(left) == is_number(right);
}

const char* name_of(const DDS_TypeCode& type) {
    return type.name != nullptr ? type.name : "a type without members";
}

}  // namespace

FilterParser::FilterParser(const DDS_TypeCode& type, FilterTexts& texts, FilterProgram& program,
                           FilterFault& fault)
    : program_(program),
      fault_(fault),
      operands_(texts, program, fault),
      lexer_({texts.expression.data(), texts.expression.size()}) {
    program_.nodes[0].type = &type;
    program_.node_count = 1;
}

Success FilterParser::parse() {
    advance();
    if (!condition()) {
        return false;
    }
    return token_.kind == SqlTokenKind::end || expected("AND, OR or the end");
}

Success FilterParser::condition() {
    const StepIndex begin = next_step();
    if (!term()) {
        return false;
    }
    while (accept(SqlTokenKind::keyword_or)) {
        redirect(begin, fails, next_step());
        if (!term()) {
            return false;
        }
    }
    return true;
}

Success FilterParser::term() {
    const StepIndex begin = next_step();
    if (!factor()) {
        return false;
    }
    while (accept(SqlTokenKind::keyword_and)) {
        redirect(begin, holds, next_step());
        if (!factor()) {
            return false;
        }
    }
    return true;
}

Success FilterParser::factor() {
    const StepIndex begin = next_step();
    bool negated = false;
    while (accept(SqlTokenKind::keyword_not)) {
        negated = !negated;
    }
    if (!(token_.kind == SqlTokenKind::open_bracket ? bracket() : predicate())) {
        return false;
    }
    if (negated) {
        negate(begin);
    }
    return true;
}

Success FilterParser::bracket() {
    if (nesting_ == filter_nesting_limit) {
        return set_fault(fault_, {token_.position}, "more than %d brackets around one another",
                         filter_nesting_limit);
    }
    advance();
    ++nesting_;
    if (!condition()) {
        return false;
    }
    --nesting_;
    return accept(SqlTokenKind::close_bracket) || expected("AND, OR or ')'");
}

Success FilterParser::predicate() {
    FilterOperand left;
    if (!operand(left)) {
        return false;
    }
    if (const auto comparison = comparison_of(token_.kind)) {
        advance();
        FilterOperand right;
        return operand(right) && compare(left, *comparison, right);
    }
    const bool negated = accept(SqlTokenKind::keyword_not);
    if (accept(SqlTokenKind::keyword_between)) {
        return between(left, negated);
    }
    if (accept(SqlTokenKind::keyword_like)) {
        return like(left, negated);
    }
    return expected(negated ? "BETWEEN or LIKE" : "a comparison, BETWEEN or LIKE");
}

Success FilterParser::between(const FilterOperand& subject, bool negated) {
    FilterOperand low;
    FilterOperand high;
    if (!operand(low)) {
        return false;
    }
    if (!accept(SqlTokenKind::keyword_and)) {
        return expected("AND and the upper end of the range");
    }
    const StepIndex begin = next_step();
    if (!operand(high) || !compare(subject, Comparison::greater_equal, low)) {
        return false;
    }
    redirect(begin, holds, next_step());
    if (!compare(subject, Comparison::less_equal, high)) {
        return false;
    }
    if (negated) {
        negate(begin);
    }
    return true;
}

Success FilterParser::like(const FilterOperand& subject, bool negated) {
    FilterOperand pattern;
    if (!operand(pattern)) {
        return false;
    }
    if (subject.kind == FilterOperandKind::name) {
        return unknown_name(subject);
    }
    if (subject.kind != FilterOperandKind::field || subject.type->kind != DDS_TK_STRING) {
        return set_fault(fault_, subject.place, "expected a text field in front of LIKE");
    }
    if (pattern.kind != FilterOperandKind::text) {
        return set_fault(fault_, pattern.place, "expected a pattern in quotes behind LIKE");
    }
    const StepIndex begin = next_step();
    OperandIndex right = 0;
    if (!add_constant(pattern, 0, right) ||
        !add_step({Comparison::like, true, subject.field, right}, subject.place)) {
        return false;
    }
    if (negated) {
        negate(begin);
    }
    return true;
}

Success FilterParser::operand(FilterOperand& result) {
    if (!operands_.read(token_, result)) {
        return false;
    }
    advance();
    return true;
}

Success FilterParser::compare(const FilterOperand& left, Comparison comparison,
                              const FilterOperand& right) {
    const FilterOperand& subject = left.kind == FilterOperandKind::field ? left : right;
    const FilterOperand& other = left.kind == FilterOperandKind::field ? right : left;
    if (subject.kind != FilterOperandKind::field) {
        if (left.kind == FilterOperandKind::name || right.kind == FilterOperandKind::name) {
            return unknown_name(left.kind == FilterOperandKind::name ? left : right);
        }
        return set_fault(fault_, left.place, "expected a field on one side of the comparison");
    }
    OperandIndex index = 0;
    if (!convert(other, *subject.type, index)) {
        return false;
    }
    const bool subject_first = &subject == &left;
    return add_step({comparison, subject.type->kind == DDS_TK_STRING,
                     subject_first ? subject.field : index, subject_first ? index : subject.field},
                    left.place);
}

Success FilterParser::convert(const FilterOperand& operand, const DDS_TypeCode& type,
                              OperandIndex& index) {
    if (operand.kind == FilterOperandKind::field) {
        index = operand.field;
        if (!are_comparable(*operand.type, type)) {
            return set_fault(fault_, operand.place,
                             "a field of another type than the one it meets");
        }
        return true;
    }
    if (type.kind == DDS_TK_ENUM && operand.kind != FilterOperandKind::integer) {
        return convert_enumerator(operand, type, index);
    }
    if (operand.kind == FilterOperandKind::name && operand.place.parameter < 0) {
        return unknown_name(operand);
    }
    const bool text = type.kind == DDS_TK_STRING;
    if (operand.kind != (text ? FilterOperandKind::text : FilterOperandKind::integer)) {
        return set_fault(fault_, operand.place,
                         text ? "expected a text in quotes" : "expected a number");
    }
    return add_constant(operand, operand.number, index);
}

Success FilterParser::convert_enumerator(const FilterOperand& operand, const DDS_TypeCode& type,
                                         OperandIndex& index) {
    for (DDS_UnsignedLong i = 0; i < type.memberCount; ++i) {
        if (operand.text == type.members[i].name) {
            return add_constant(operand, type.members[i].id, index);
        }
    }
    return set_fault(fault_, operand.place, "%.*s is not an enumerator of %s",
                     quotation_length(operand.text), operand.text.data(), name_of(type));
}

Success FilterParser::add_constant(const FilterOperand& operand, std::int64_t number,
                                   OperandIndex& index) {
    if (program_.constant_count == filter_constant_limit) {
        return set_fault(fault_, operand.place, "more than %zu constants", filter_constant_limit);
    }
    index = static_cast<OperandIndex>(~static_cast<int>(program_.constant_count));
    program_.constants[program_.constant_count++] = {number, operand.text};
    return true;
}

Success FilterParser::add_step(const Step& step, const FilterPlace& place) {
    if (program_.step_count == filter_step_limit) {
        return set_fault(fault_, place, "more than %zu comparisons", filter_step_limit);
    }
    program_.steps[program_.step_count++] = step;
    return true;
}

void FilterParser::redirect(StepIndex begin, StepIndex from, StepIndex to) {
    for (std::size_t i = begin; i < program_.step_count; ++i) {
        Step& step = program_.steps[i];
        step.on_true = step.on_true == from ? to : step.on_true;
        step.on_false = step.on_false == from ? to : step.on_false;
    }
}

void FilterParser::negate(StepIndex begin) {
    const auto other = [](StepIndex way) {
        return way == holds ? fails : way == fails ? holds : way;
    };
    for (std::size_t i = begin; i < program_.step_count; ++i) {
        Step& step = program_.steps[i];
        step.on_true = other(step.on_true);
        step.on_false = other(step.on_false);
    }
}

bool FilterParser::accept(SqlTokenKind kind) {
    if (token_.kind != kind) {
        return false;
    }
    advance();
    return true;
}

Success FilterParser::expected(const char* what) {
    return set_unexpected(fault_, token_, -1, what);
}

Success FilterParser::unknown_name(const FilterOperand& operand) {
    if (operand.place.parameter >= 0) {
        return set_fault(fault_, operand.place, "expected a number or a text in quotes");
    }
    std::size_t known = 0;
    find_field(*program_.nodes[0].type, operand.text, known);
    const std::string_view rest = operand.text.substr(known);
    return set_fault(fault_, {operand.place.position + known}, "there is no field %.*s in %.*s",
                     quotation_length(rest), rest.data(), quotation_length(operand.text),
                     operand.text.data());
}

}  // namespace pexa::dds

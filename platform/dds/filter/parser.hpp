/// @file parser.hpp
/// @brief From the text of a filter expression to its program.
#pragma once

#include "platform/dds/filter/operand.hpp"

namespace pexa::dds {

/// A recursive descent over
///
///     condition  = term { OR term }
///     term       = factor { AND factor }
///     factor     = { NOT } ( "(" condition ")" | predicate )
///     predicate  = operand ( comparison operand
///                          | [ NOT ] BETWEEN operand AND operand
///                          | [ NOT ] LIKE operand )
///     operand    = field | integer | 'text' | enumerator | parameter
///
/// Of two compared operands at least one is a field, and its type decides the other operand: an
/// integer, a text, or for an enumeration an integer or an enumerator's name, in quotes or not. A
/// bare name that is a field means the field. A parameter is an integer, a 'text' or an
/// enumerator.
class FilterParser {
public:
    FilterParser(const DDS_TypeCode& type, FilterTexts& texts, FilterProgram& program,
                 FilterFault& fault);

    /// Fills in the fault when it fails; the program is then of no use.
    Success parse();

private:
    Success condition();
    Success term();
    Success factor();
    Success bracket();
    Success predicate();
    Success between(const FilterOperand& subject, bool negated);
    Success like(const FilterOperand& subject, bool negated);
    Success operand(FilterOperand& result);

    Success compare(const FilterOperand& left, Comparison comparison, const FilterOperand& right);
    Success convert(const FilterOperand& operand, const DDS_TypeCode& type, OperandIndex& index);
    Success convert_enumerator(const FilterOperand& operand, const DDS_TypeCode& type,
                               OperandIndex& index);
    Success add_constant(const FilterOperand& operand, std::int64_t number, OperandIndex& index);
    Success add_step(const Step& step, const FilterPlace& place);

    StepIndex next_step() const { return static_cast<StepIndex>(program_.step_count); }
    void redirect(StepIndex begin, StepIndex from, StepIndex to);
    void negate(StepIndex begin);

    void advance() { token_ = lexer_.next(); }
    bool accept(SqlTokenKind kind);
    Success expected(const char* what);
    Success unknown_name(const FilterOperand& operand);

    FilterProgram& program_;
    FilterFault& fault_;
    FilterOperandReader operands_;
    SqlLexer lexer_;
    SqlToken token_;
    int nesting_ = 0;
};

}  // namespace pexa::dds

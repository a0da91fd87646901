/// @file content_filter_parser.hpp
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
/// Of two compared operands at least one is a field, and its type decides what the other may be:
/// an integer, a text, or for an enumeration an integer or an enumerator's name, in quotes or not.
/// A bare name that is a field means the field. A parameter is an integer, a 'text' or an
/// enumerator.
class FilterParser {
public:
    FilterParser(const DDS_TypeCode& type, FilterTexts& texts, FilterProgram& program,
                 FilterFault& fault);

    /// @return false after filling in the fault; the program is then of no use.
    [[nodiscard]] bool parse();

private:
    [[nodiscard]] bool condition();
    [[nodiscard]] bool term();
    [[nodiscard]] bool factor();
    [[nodiscard]] bool bracket();
    [[nodiscard]] bool predicate();
    [[nodiscard]] bool between(const FilterOperand& subject, bool negated);
    [[nodiscard]] bool like(const FilterOperand& subject, bool negated);
    [[nodiscard]] bool operand(FilterOperand& result);

    [[nodiscard]] bool compare(const FilterOperand& left, Comparison comparison,
                               const FilterOperand& right);
    [[nodiscard]] bool convert(const FilterOperand& operand, const DDS_TypeCode& type,
                               OperandIndex& index);
    [[nodiscard]] bool convert_enumerator(const FilterOperand& operand, const DDS_TypeCode& type,
                                          OperandIndex& index);
    [[nodiscard]] bool add_constant(const FilterOperand& operand, std::int64_t number,
                                    OperandIndex& index);
    [[nodiscard]] bool add_step(const Step& step, const FilterPlace& place);

    [[nodiscard]] StepIndex next_step() const {
        return static_cast<StepIndex>(program_.step_count);
    }
    void redirect(StepIndex begin, StepIndex from, StepIndex to);
    void negate(StepIndex begin);

    void advance() { token_ = lexer_.next(); }
    [[nodiscard]] bool accept(SqlTokenKind kind);
    bool expected(const char* what);
    bool unknown_name(const FilterOperand& operand);

    FilterProgram& program_;
    FilterFault& fault_;
    FilterOperandReader operands_;
    SqlLexer lexer_;
    SqlToken token_;
    int nesting_ = 0;
};

}  // namespace pexa::dds

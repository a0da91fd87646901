/// @file operand.hpp
/// @brief The sides of a comparison.
#pragma once

#include <array>
#include <span>

#include "platform/dds/filter/fault.hpp"
#include "platform/dds/filter/program.hpp"

namespace pexa::dds {

inline constexpr std::size_t filter_parameter_limit = 100;

/// The texts of a filter, which the program will point into. Reading replaces doubled quotes in
/// place.
struct FilterTexts {
    std::span<char> expression;
    /// A parameter without data is missing.
    std::array<std::span<char>, filter_parameter_limit> parameters;
};

enum class FilterOperandKind {
    field,
    integer,
    text,
    name,  ///< a bare name that is not a field, perhaps an enumerator
};

struct FilterOperand {
    FilterOperandKind kind = FilterOperandKind::integer;
    FilterPlace place;
    const DDS_TypeCode* type = nullptr;  ///< of a field
    OperandIndex field = 0;
    std::int64_t number = 0;
    std::string_view text;
};

/// Makes operands of tokens.
class FilterOperandReader {
public:
    FilterOperandReader(FilterTexts& texts, FilterProgram& program, FilterFault& fault)
        : texts_(texts), program_(program), fault_(fault) {}

    /// Fills in the fault when it fails.
    /// @param token of the expression
    Success read(const SqlToken& token, FilterOperand& result);

private:
    Success field(const SqlToken& token, FilterOperand& result);
    Success parameter(const SqlToken& token, FilterOperand& result);
    Success parse_parameter(std::size_t index, FilterOperand& result);
    static Success literal(const SqlToken& token, std::span<char> text, int parameter,
                           FilterOperand& result);

    // Reading a parameter removes its quotes, so its operand is kept for the next use.
    struct Parameter {
        bool parsed = false;
        FilterOperand operand;
    };

    FilterTexts& texts_;
    FilterProgram& program_;
    FilterFault& fault_;
    std::array<Parameter, filter_parameter_limit> parameters_;
};

}  // namespace pexa::dds

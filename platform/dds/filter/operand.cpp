#include "platform/dds/filter/operand.hpp"

#include "platform/dds/filter/field_path.hpp"

namespace pexa::dds {
namespace {

bool is_value(const DDS_TypeCode& type) {
    return type.kind == DDS_TK_LONG || type.kind == DDS_TK_ENUM || type.kind == DDS_TK_STRING;
}

// Removes the quotes around a text, and replaces two quotes inside by one. The text only gets
// shorter.
std::string_view unquote(std::span<char> quoted) {
    const std::span<char> inside = quoted.subspan(1, quoted.size() - 2);
    std::size_t length = 0;
    for (std::size_t i = 0; i < inside.size(); ++i) {
        inside[length++] = inside[i];
        if (inside[i] == '\'') {
            ++i;
        }
    }
    return {inside.data(), length};
}

}  // namespace

Success FilterOperandReader::read(const SqlToken& token, FilterOperand& result) {
    if (token.kind == SqlTokenKind::parameter) {
        return parameter(token, result);
    }
    if (!literal(token, texts_.expression, -1, result)) {
        return set_unexpected(fault_, token, -1,
                              "a field, a number, a text in quotes or a parameter");
    }
    return result.kind != FilterOperandKind::name || field(token, result);
}

Success FilterOperandReader::field(const SqlToken& token, FilterOperand& result) {
    std::size_t known = 0;
    const DDS_TypeCode* type = find_field(*program_.nodes[0].type, token.source, known);
    if (type == nullptr) {
        return true;
    }
    if (!is_value(*type)) {
        return set_fault(fault_, result.place, "%.*s is not a number, text or enumeration",
                         quotation_length(token.source), token.source.data());
    }
    result.kind = FilterOperandKind::field;
    result.type = type;
    return add_field(program_, token.source, result.place, result.field, fault_);
}

Success FilterOperandReader::parameter(const SqlToken& token, FilterOperand& result) {
    const auto index = static_cast<std::size_t>(token.number);
    if (texts_.parameters[index].data() == nullptr) {
        return set_fault(fault_, {token.position}, "there is no parameter %%%zu", index);
    }
    Parameter& known = parameters_[index];
    if (!known.parsed && !parse_parameter(index, known.operand)) {
        return false;
    }
    known.parsed = true;
    result = known.operand;
    return true;
}

Success FilterOperandReader::parse_parameter(std::size_t index, FilterOperand& result) {
    const std::span<char> text = texts_.parameters[index];
    const auto number = static_cast<int>(index);
    SqlLexer lexer({text.data(), text.size()});
    const SqlToken value = lexer.next();
    const SqlToken rest = lexer.next();
    if (!literal(value, text, number, result)) {
        return set_unexpected(fault_, value, number, "a number, a text in quotes or an enumerator");
    }
    if (rest.kind != SqlTokenKind::end) {
        return set_unexpected(fault_, rest, number, "the end");
    }
    return true;
}

Success FilterOperandReader::literal(const SqlToken& token, std::span<char> text, int parameter,
                                     FilterOperand& result) {
    result.place = {token.position, parameter};
    result.number = token.number;
    result.text = token.source;
    if (token.kind == SqlTokenKind::integer) {
        result.kind = FilterOperandKind::integer;
        return true;
    }
    if (token.kind == SqlTokenKind::name) {
        result.kind = FilterOperandKind::name;
        return true;
    }
    if (token.kind == SqlTokenKind::text) {
        result.kind = FilterOperandKind::text;
        result.text = unquote(text.subspan(token.position, token.source.size()));
        return true;
    }
    return false;
}

}  // namespace pexa::dds

/// @file sql_lexer.hpp
/// @brief The words of a filter expression.
#pragma once

#include <cstdint>
#include <string_view>

namespace pexa::dds {

enum class SqlTokenKind {
    end,
    invalid,
    name,       ///< letters, digits, underscores and dots between them
    integer,    ///< decimal with or without sign, or 0x and hexadecimal digits
    text,       ///< in single quotes; two quotes inside stand for one
    parameter,  ///< % and one or two digits
    equal,
    not_equal,
    less,
    less_equal,
    greater,
    greater_equal,
    open_bracket,
    close_bracket,
    keyword_and,
    keyword_or,
    keyword_not,
    keyword_between,
    keyword_like,
};

struct SqlToken {
    SqlTokenKind kind = SqlTokenKind::end;
    std::size_t position = 0;  ///< of its first character, from 0
    std::string_view source;   ///< as it is written
    /// Value of an integer, index of a parameter. A hexadecimal number of up to 32 bits stands for
    /// the signed number of that bit pattern.
    std::int64_t number = 0;
    const char* fault = nullptr;  ///< why it is invalid
};

/// Cuts a text into tokens; keywords are recognised in any case.
class SqlLexer {
public:
    explicit SqlLexer(std::string_view text) : text_(text) {}

    /// @return the next token, and `end` whenever there is none.
    SqlToken next();

private:
    char peek(std::size_t offset = 0) const;
    SqlToken token(SqlTokenKind kind, std::size_t size);
    SqlToken invalid(std::size_t size, const char* fault);
    SqlToken word();
    SqlToken integer();
    SqlToken hexadecimal(std::size_t size);
    SqlToken quoted();
    SqlToken parameter();
    SqlToken symbol();

    std::string_view text_;
    std::size_t position_ = 0;
};

}  // namespace pexa::dds

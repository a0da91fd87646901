#include "platform/dds/filter/sql_lexer.hpp"

#include <algorithm>
#include <charconv>
#include <iterator>

namespace pexa::dds {
namespace {

// The locale must not decide what an expression means, so <cctype> is of no use here.
constexpr bool is_digit(char c) {
    return c >= '0' && c <= '9';
}
constexpr char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
constexpr bool is_letter(char c) {
    return (lower(c) >= 'a' && lower(c) <= 'z') || c == '_';
}
constexpr bool is_word(char c) {
    return is_letter(c) || is_digit(c);
}
constexpr bool is_space(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

struct Keyword {
    std::string_view name;
    SqlTokenKind kind;
};
constexpr Keyword keywords[] = {
    {"and", SqlTokenKind::keyword_and},         {"or", SqlTokenKind::keyword_or},
    {"not", SqlTokenKind::keyword_not},         {"like", SqlTokenKind::keyword_like},
    {"between", SqlTokenKind::keyword_between},
};

// A symbol that begins another symbol stands behind it.
constexpr Keyword symbols[] = {
    {"<=", SqlTokenKind::less_equal},   {">=", SqlTokenKind::greater_equal},
    {"<>", SqlTokenKind::not_equal},    {"!=", SqlTokenKind::not_equal},
    {"=", SqlTokenKind::equal},         {"<", SqlTokenKind::less},
    {">", SqlTokenKind::greater},       {"(", SqlTokenKind::open_bracket},
    {")", SqlTokenKind::close_bracket},
};

bool equal_ignoring_case(std::string_view word, std::string_view lower_case) {
    return std::ranges::equal(word, lower_case, {}, lower);
}

}  // namespace

char SqlLexer::peek(std::size_t offset) const {
    return position_ + offset < text_.size() ? text_[position_ + offset] : '\0';
}

SqlToken SqlLexer::token(SqlTokenKind kind, std::size_t size) {
    SqlToken token;
    token.kind = kind;
    token.position = position_;
    token.source = text_.substr(position_, size);
    position_ += token.source.size();
    return token;
}

SqlToken SqlLexer::invalid(std::size_t size, const char* fault) {
    SqlToken token = this->token(SqlTokenKind::invalid, size);
    token.fault = fault;
    return token;
}

SqlToken SqlLexer::next() {
    while (is_space(peek())) {
        ++position_;
    }
    const char first = peek();
    if (is_letter(first)) {
        return word();
    }
    if (is_digit(first) || first == '-' || first == '+') {
        return integer();
    }
    switch (first) {
        case '\'':
            return quoted();
        case '%':
            return parameter();
        default:
            return symbol();
    }
}

SqlToken SqlLexer::word() {
    std::size_t size = 1;
    while (is_word(peek(size)) || (peek(size) == '.' && is_letter(peek(size + 1)))) {
        ++size;
    }
    if (peek(size) == '.') {
        return invalid(size + 1, "a name that ends in a dot");
    }
    const std::string_view source = text_.substr(position_, size);
    const auto* keyword = std::ranges::find_if(keywords, [source](const Keyword& candidate) {
        return equal_ignoring_case(source, candidate.name);
    });
    return token(keyword != std::end(keywords) ? keyword->kind : SqlTokenKind::name, size);
}

SqlToken SqlLexer::integer() {
    const std::size_t sign = is_digit(peek()) ? 0 : 1;
    std::size_t size = sign;
    while (is_word(peek(size)) || peek(size) == '.') {
        ++size;
    }
    if (sign == 0 && peek() == '0' && lower(peek(1)) == 'x') {
        return hexadecimal(size);
    }
    // A plus sign is the only thing that from_chars does not know.
    const std::size_t skipped = peek() == '+' ? 1 : 0;
    const std::string_view digits = text_.substr(position_ + skipped, size - skipped);
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(digits.begin(), digits.end(), number);
    if (error == std::errc::result_out_of_range) {
        return invalid(size, "a number of more than 64 bits");
    }
    if (error != std::errc() || end != digits.end() || !is_digit(peek(sign))) {
        return invalid(size, "not an integer");
    }
    SqlToken result = token(SqlTokenKind::integer, size);
    result.number = number;
    return result;
}

SqlToken SqlLexer::hexadecimal(std::size_t size) {
    const std::string_view digits = text_.substr(position_ + 2, size - 2);
    std::uint32_t pattern = 0;
    const auto [end, error] = std::from_chars(digits.begin(), digits.end(), pattern, 16);
    if (error == std::errc::result_out_of_range) {
        return invalid(size, "a hexadecimal number of more than 32 bits");
    }
    if (error != std::errc() || end != digits.end()) {
        return invalid(size, "not an integer");
    }
    SqlToken result = token(SqlTokenKind::integer, size);
    result.number = static_cast<std::int32_t>(pattern);
    return result;
}

SqlToken SqlLexer::quoted() {
    std::size_t size = 1;
    while (position_ + size < text_.size()) {
        if (peek(size) != '\'') {
            ++size;
        } else if (peek(size + 1) == '\'') {
            size += 2;
        } else {
            return token(SqlTokenKind::text, size + 1);
        }
    }
    return invalid(size, "a text without closing quote");
}

SqlToken SqlLexer::parameter() {
    std::size_t size = 1;
    while (is_word(peek(size))) {
        ++size;
    }
    const std::string_view digits = text_.substr(position_ + 1, size - 1);
    if (digits.empty() || digits.size() > 2 || !std::ranges::all_of(digits, is_digit)) {
        return invalid(size, "not a parameter of %0 to %99");
    }
    std::int64_t index = 0;
    for (const char digit : digits) {
        index = index * 10 + (digit - '0');
    }
    SqlToken result = token(SqlTokenKind::parameter, size);
    result.number = index;
    return result;
}

SqlToken SqlLexer::symbol() {
    const std::string_view rest = text_.substr(position_);
    if (rest.empty()) {
        return token(SqlTokenKind::end, 0);
    }
    for (const Keyword& symbol : symbols) {
        if (rest.starts_with(symbol.name)) {
            return token(symbol.kind, symbol.name.size());
        }
    }
    return invalid(1, "a character without meaning here");
}

}  // namespace pexa::dds

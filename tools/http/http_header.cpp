#include "tools/http/http_header.hpp"

#include <fmt/format.h>
#include <strings.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "tools/text/named_numbers.hpp"

namespace orvane::tools {
namespace {

bool is_token(std::string_view name) {
    constexpr std::string_view marks = "!#$%&'*+-.^_`|~";
    return !name.empty() && std::all_of(name.begin(), name.end(), [&](char each) {
        return (each >= '0' && each <= '9') || (each >= 'a' && each <= 'z') ||
               (each >= 'A' && each <= 'Z') || marks.find(each) != std::string_view::npos;
    });
}

bool has_control(std::string_view value) {
    constexpr char last_control = 0x1F;
    constexpr char delete_control = 0x7F;
    return std::any_of(value.begin(), value.end(), [&](char each) {
        return (each >= 0 && each <= last_control && each != '\t') || each == delete_control;
    });
}

bool is_same(const std::string& left, const std::string& right) {
    return strcasecmp(left.c_str(), right.c_str()) == 0;
}

bool is_of_the_body(const std::string& name) {
    const std::string names[] = {
        "Connection", "Content-Encoding", "Content-Length",    "Content-Type", "Expect",
        "Host",       "Trailer",          "Transfer-Encoding", "Upgrade"};
    return std::any_of(std::begin(names), std::end(names),
                       [&](const std::string& each) { return is_same(each, name); });
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t";
    const std::size_t begin = std::min(text.find_first_not_of(blanks), text.size());
    return text.substr(begin, text.find_last_not_of(blanks) + 1 - begin);
}

/// @return nothing where two hexadecimal digits are missing behind a %
std::optional<std::string> percent_decoded(std::string_view text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            decoded += text[i];
            continue;
        }
        const std::string_view digits = text.substr(i + 1, 2);
        const auto byte = parse_number<std::uint8_t>(digits, 16);
        if (digits.size() != 2 || !byte) {
            return std::nullopt;
        }
        decoded += static_cast<char>(*byte);
        i += 2;
    }
    return decoded;
}

}  // namespace

std::optional<HttpHeader> parse_http_header(std::string_view text, std::string& error) {
    const std::size_t equals = std::min(text.find('='), text.size());
    HttpHeader header{std::string{trimmed(text.substr(0, equals))},
                      std::string{trimmed(text.substr(std::min(equals + 1, text.size())))}};
    // A value may be a secret.
    if (equals == text.size() || !is_token(header.name)) {
        error = "NAME=VALUE expected, with letters, digits and - in the name";
        return std::nullopt;
    }
    if (is_of_the_body(header.name)) {
        error = fmt::format("{}: another name expected, this field is orvane's own", header.name);
        return std::nullopt;
    }
    if (has_control(header.value)) {
        error = fmt::format("{}: a value without control characters expected", header.name);
        return std::nullopt;
    }
    return header;
}

std::optional<std::vector<HttpHeader>> parse_http_header_list(std::string_view text,
                                                              std::string& error) {
    std::vector<HttpHeader> headers;
    while (!text.empty()) {
        const std::string_view member = text.substr(0, text.find(','));
        text.remove_prefix(std::min(member.size() + 1, text.size()));
        if (trimmed(member).empty()) {
            continue;
        }
        const auto decoded = percent_decoded(member);
        if (!decoded) {
            error = "two hexadecimal digits expected behind each %";
            return std::nullopt;
        }
        auto header = parse_http_header(*decoded, error);
        if (!header) {
            return std::nullopt;
        }
        set_header(headers, *std::move(header));
    }
    return headers;
}

void set_header(std::vector<HttpHeader>& headers, HttpHeader header) {
    std::erase_if(headers, [&](const HttpHeader& each) { return is_same(each.name, header.name); });
    headers.push_back(std::move(header));
}

}  // namespace orvane::tools

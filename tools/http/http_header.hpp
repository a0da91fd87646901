/// @file http_header.hpp
/// @brief Header fields of requests, as users write them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane::tools {

struct HttpHeader {
    std::string name;
    std::string value;
};

/// Reads "NAME=VALUE" (RFC 9110, 5). The fields that a request has for its body are not accepted.
/// @param error says what was expected, when the result is nothing
std::optional<HttpHeader> parse_http_header(std::string_view text, std::string& error);

/// Reads "NAME=VALUE,NAME=VALUE" with %XX for characters in a value that have a meaning there, the
/// form of the environment variables of OpenTelemetry.
/// @param error says what was expected, when the result is nothing
std::optional<std::vector<HttpHeader>> parse_http_header_list(std::string_view text,
                                                              std::string& error);

/// Adds a field in the place of one of the same name.
void set_header(std::vector<HttpHeader>& headers, HttpHeader header);

}  // namespace orvane::tools

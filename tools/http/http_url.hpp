/// @file http_url.hpp
/// @brief The address of a service on the web.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orvane::tools {

struct HttpUrl {
    bool is_secure = false;  ///< https
    std::string host{};      ///< a name or an address, without brackets
    std::uint16_t port = 0;
    std::string target = "/";  ///< path and query
};

/// Reads "http://HOST[:PORT][/PATH][?QUERY]" or the same with https (RFC 3986).
/// @param error says what was expected where, when the result is nothing
std::optional<HttpUrl> parse_http_url(std::string_view text, std::string& error);

std::string format_http_url(const HttpUrl& url);

}  // namespace orvane::tools

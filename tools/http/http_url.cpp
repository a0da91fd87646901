#include "tools/http/http_url.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>

#include "tools/text/named_numbers.hpp"
#include "tools/text/utf8.hpp"

namespace orvane::tools {
namespace {

constexpr std::string_view plain_scheme = "http://";
constexpr std::string_view secure_scheme = "https://";

constexpr std::uint16_t usual_port(bool is_secure) {
    return is_secure ? 443 : 80;
}

/// Cuts the host from the front of @p authority. @return nothing where there is none
std::optional<std::string_view> cut_host(std::string_view& authority) {
    const bool is_bracketed = authority.starts_with('[');
    const std::size_t end = is_bracketed ? authority.find(']') : authority.find(':');
    if (is_bracketed && end == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view host =
        authority.substr(is_bracketed ? 1 : 0, is_bracketed ? end - 1 : end);
    authority.remove_prefix(std::min(authority.size(), is_bracketed ? end + 1 : end));
    return host.empty() ? std::nullopt : std::optional{host};
}

/// @return what was expected, empty when all was there
std::string_view read(std::string_view text, HttpUrl& url) {
    const bool is_visible = std::all_of(text.begin(), text.end(), [](char each) {
        return is_printable_ascii(each) && each != ' ';
    });
    if (!is_visible) {
        return "characters of ASCII without blanks";
    }
    url.is_secure = text.starts_with(secure_scheme);
    if (!url.is_secure && !text.starts_with(plain_scheme)) {
        return "http:// or https:// at its front";
    }
    text.remove_prefix(url.is_secure ? secure_scheme.size() : plain_scheme.size());
    if (text.find('#') != std::string_view::npos) {
        return "nothing with a #";
    }
    std::string_view authority = text.substr(0, text.find_first_of("/?"));
    const std::string_view target = text.substr(authority.size());
    if (authority.find('@') != std::string_view::npos) {
        return "no user in front of the host; a --header can have what tells who sends";
    }
    const auto host = cut_host(authority);
    if (!host) {
        return "a host behind ://";
    }
    url.host = *host;
    url.port = usual_port(url.is_secure);
    if (!authority.empty()) {
        const auto port = authority.starts_with(':')
                              ? parse_number<std::uint16_t>(authority.substr(1), 10)
                              : std::nullopt;
        if (!port || *port == 0) {
            return "a port from 1 to 65535 behind the host and a colon";
        }
        url.port = *port;
    }
    url.target = (target.starts_with('/') ? "" : "/") + std::string{target};
    return "";
}

}  // namespace

std::optional<HttpUrl> parse_http_url(std::string_view text, std::string& error) {
    HttpUrl url;
    const std::string_view expected = read(text, url);
    if (!expected.empty()) {
        error = fmt::format("'{}' is no address of a collector: {} expected", text, expected);
        return std::nullopt;
    }
    return url;
}

std::string format_http_url(const HttpUrl& url) {
    const bool has_colon = url.host.find(':') != std::string::npos;
    const std::string port =
        url.port == usual_port(url.is_secure) ? "" : fmt::format(":{}", url.port);
    return fmt::format("{}{}{}{}{}{}", url.is_secure ? secure_scheme : plain_scheme,
                       has_colon ? "[" : "", url.host, has_colon ? "]" : "", port, url.target);
}

}  // namespace orvane::tools

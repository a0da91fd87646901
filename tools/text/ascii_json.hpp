/// @file ascii_json.hpp
/// @brief JSON that cannot disturb a terminal.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace orvane::tools {

/// The value on one line of ASCII (RFC 8259); bytes that are not UTF-8 become U+FFFD.
inline std::string ascii_json_line(const nlohmann::ordered_json& value) {
    constexpr bool escape_beyond_ascii = true;
    return value.dump(-1, ' ', escape_beyond_ascii,
                      nlohmann::ordered_json::error_handler_t::replace) +
           '\n';
}

}  // namespace orvane::tools

/// @file application_text.hpp
/// @brief The identity of an application as "HOST:APP", both parts in hexadecimal.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "tools/records/application.hpp"

namespace orvane::tools {

/// Reads a number of 32 bits in hexadecimal digits for each part. @return nothing for any other
/// text
std::optional<Application> parse_application(std::string_view text);

/// Writes eight digits for each part.
std::string format_application(const Application& application);

}  // namespace orvane::tools

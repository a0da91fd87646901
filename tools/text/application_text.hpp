/// @file application_text.hpp
/// @brief The identity of an application as "HOST:APP" or "HOST:APP:INSTANCE", the parts in
/// hexadecimal.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "tools/records/application.hpp"

namespace orvane::tools {

/// Reads a number of 32 bits in hexadecimal digits for each part. Without the third part the
/// instance id is 0. @return nothing for any other text
std::optional<Application> parse_application(std::string_view text);

/// "HOST:APP" with eight digits for each part.
std::string format_application(const Application& application);

/// "HOST:APP:INSTANCE", or "HOST:APP" when the instance id is not known.
std::string format_instance(const Application& application);

}  // namespace orvane::tools

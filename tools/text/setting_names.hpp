/// @file setting_names.hpp
/// @brief The names of a logger's settings. A user may write them in any case, or as numbers.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "tools/records/logger_state.hpp"

namespace orvane::tools {

std::optional<MiddlewareCategory> parse_middleware_category(std::string_view text);
std::string_view middleware_category_name(MiddlewareCategory category);
std::string middleware_category_names();

std::optional<Verbosity> parse_verbosity(std::string_view text);
std::string_view verbosity_name(Verbosity verbosity);
std::string verbosity_names();

std::optional<PrintFormat> parse_print_format(std::string_view text);
std::string_view print_format_name(PrintFormat format);
std::string print_format_names();

std::optional<StateKind> parse_state(std::string_view text);
std::string_view state_name(StateKind state);
std::string state_names();

}  // namespace orvane::tools

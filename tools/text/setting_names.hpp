/// @file setting_names.hpp
/// @brief The words for a logger's settings. Those who ask may write them in any case, or as
/// numbers.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "tools/records/logger_state.hpp"

namespace orvane::tools {

/// Names of log levels and SILENT, which lets nothing through, or digits.
/// @return nothing for other texts and for negative numbers
std::optional<std::int32_t> parse_filter_level(std::string_view text);
std::string filter_level_text(std::int32_t level);
std::string filter_level_names();

std::optional<Category> parse_category(std::string_view text);
std::string_view category_name(Category category);
std::string category_names();

std::optional<Verbosity> parse_verbosity(std::string_view text);
std::string_view verbosity_name(Verbosity verbosity);
std::string verbosity_names();

std::optional<PrintFormat> parse_print_format(std::string_view text);
std::string_view print_format_name(PrintFormat format);
std::string print_format_names();

std::string_view state_name(StateKind state);

}  // namespace orvane::tools

/// @file otlp_request.hpp
/// @brief Records as OpenTelemetry has them.
#pragma once

#include <span>
#include <string>

#include "tools/export/export_record.hpp"

namespace orvane::tools {

/// An ExportLogsServiceRequest of the OpenTelemetry protocol in JSON: lowerCamelCase, 64-bit
/// integers as texts, enumerators as numbers. Each logger is a resource, and each of its categories
/// a scope. Each byte that is not UTF-8 becomes U+FFFD. A time before 1970 is not known there.
std::string otlp_request(std::span<const ExportRecord> records);

}  // namespace orvane::tools

/// @file otlp_sink.hpp
/// @brief Sends records to a collector by the OpenTelemetry protocol over HTTP.
#pragma once

#include <memory>

#include "tools/export/export_sink.hpp"
#include "tools/http/http_client.hpp"

namespace orvane::tools {

std::unique_ptr<ExportSink> make_otlp_sink(const HttpClient::Options& options);

}  // namespace orvane::tools

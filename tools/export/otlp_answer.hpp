/// @file otlp_answer.hpp
/// @brief What a collector says to a request.
#pragma once

#include <cstddef>
#include <cstdint>

#include "tools/export/export_sink.hpp"
#include "tools/http/http_client.hpp"

namespace orvane::tools {

/// 2xx: taken, but for the records that a partial success in the body rejects. 429, 502, 503 and
/// 504: to be tried again, after the time in Retry-After, an hour at most. Any other: refused.
/// @param records of the request
/// @param now since 1970-01-01 UTC
Delivery delivery_of(const HttpAnswer& answer, std::size_t records, std::int64_t now);

}  // namespace orvane::tools

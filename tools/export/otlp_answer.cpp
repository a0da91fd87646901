#include "tools/export/otlp_answer.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <ctime>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "tools/text/named_numbers.hpp"

namespace orvane::tools {
namespace {

using Json = nlohmann::json;

/// A member, or null where there is none.
Json member(const Json& object, const char* name) {
    return object.is_object() ? object.value(name, Json{}) : Json{};
}

std::string text_of(const Json& value) {
    constexpr std::size_t longest = 200;
    return value.is_string() ? value.get<std::string>().substr(0, longest) : "";
}

/// A 64-bit integer, which is a text in the protocol.
std::uint64_t number_of(const Json& value) {
    if (value.is_string()) {
        return parse_number<std::uint64_t>(value.get<std::string>(), 10).value_or(0);
    }
    return value.is_number_unsigned() ? value.get<std::uint64_t>() : 0;
}

/// Reads a time as servers write it (RFC 9110, 5.6.7).
std::optional<std::time_t> parse_http_date(const std::string& text) {
    for (const char* form :
         {"%a, %d %b %Y %H:%M:%S GMT", "%A, %d-%b-%y %H:%M:%S GMT", "%a %b %d %H:%M:%S %Y"}) {
        std::tm time{};
        const char* end = strptime(text.c_str(), form, &time);
        if (end != nullptr && *end == '\0') {
            return timegm(&time);
        }
    }
    return std::nullopt;
}

std::optional<std::chrono::milliseconds> pause_of(const std::string& retry_after,
                                                  std::int64_t now) {
    constexpr std::int64_t second = 1'000'000'000;
    constexpr std::int64_t longest = 3600;
    std::optional<std::int64_t> seconds = parse_number<std::int64_t>(retry_after, 10);
    if (!seconds) {
        const auto time = parse_http_date(retry_after);
        if (!time) {
            return std::nullopt;
        }
        // The clock shows a part of a second more.
        seconds = *time - now / second;
    }
    return std::chrono::seconds{std::clamp<std::int64_t>(*seconds, 0, longest)};
}

}  // namespace

Delivery delivery_of(const HttpAnswer& answer, std::size_t records, std::int64_t now) {
    constexpr bool throws = false;
    const Json body = Json::parse(answer.body, nullptr, throws);
    if (answer.status >= 200 && answer.status < 300) {
        const Json partial = member(body, "partialSuccess");
        const std::uint64_t rejected =
            std::min<std::uint64_t>(number_of(member(partial, "rejectedLogRecords")), records);
        Delivery delivery{.done = records, .refused = static_cast<std::size_t>(rejected)};
        if (rejected > 0) {
            delivery.problem =
                fmt::format("records rejected: {}", text_of(member(partial, "errorMessage")));
        }
        return delivery;
    }
    const std::string said = text_of(member(body, "message"));
    const std::string problem =
        fmt::format("answers {}{}{}", answer.status, said.empty() ? "" : ": ", said);
    switch (answer.status) {
        case 429:
        case 502:
        case 503:
        case 504:
            return {.pause = pause_of(answer.retry_after, now), .problem = problem};
        default:
            return {.done = records, .refused = records, .problem = problem};
    }
}

}  // namespace orvane::tools

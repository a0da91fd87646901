/// @file mcap_channels.hpp
/// @brief The channels of a recording in MCAP, one for each type of event.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <variant>

#include "tools/records/recorded_event.hpp"

namespace orvane::tools {

/// A channel and its schema, which have the same number: 1 and the position in the table.
struct McapChannel {
    std::string_view topic;
    std::string_view schema_name;
    std::string_view schema;  ///< JSON Schema
};

/// In the order of the alternatives of @ref RecordedEvent.
inline constexpr std::array<McapChannel, std::variant_size_v<RecordedEvent>> mcap_channels{{
    {"qel/orvane/log", "foxglove.Log",
     R"({"title":"foxglove.Log","type":"object","properties":{)"
     R"("timestamp":{"type":"object","title":"time","properties":{)"
     R"("sec":{"type":"integer","minimum":0},)"
     R"("nsec":{"type":"integer","minimum":0,"maximum":999999999}}},)"
     R"("level":{"type":"integer","minimum":0,"maximum":5},"message":{"type":"string"},)"
     R"("name":{"type":"string"},"file":{"type":"string"},"line":{"type":"integer"},)"
     R"("type":{"const":"message"},"time":{"type":"string","format":"date-time"},)"
     R"("orvane_level":{"type":"integer"},"level_name":{"type":"string"},)"
     R"("app":{"type":"string"},"host_id":{"type":"integer"},"app_id":{"type":"integer"},)"
     R"("instance_id":{"type":"integer"},)"
     R"("kind":{"type":"string"},"number":{"type":"integer"},"host":{"type":"string"},)"
     R"("process":{"type":"string"},"pid":{"type":"integer"},"category":{"type":"string"},)"
     R"("publisher":{"type":"object"}}})"},
    {"orvane/loss", "orvane.Loss",
     R"({"title":"orvane.Loss","type":"object","properties":{)"
     R"("type":{"const":"loss"},"time":{"type":"string","format":"date-time"},)"
     R"("app":{"type":"string"},"host_id":{"type":"integer"},"app_id":{"type":"integer"},)"
     R"("instance_id":{"type":"integer"},)"
     R"("kind":{"type":"string"},"number":{"type":"integer"},"host":{"type":"string"},)"
     R"("process":{"type":"string"},"pid":{"type":"integer"},"lost":{"type":"integer"},)"
     R"("queue_full":{"type":"integer"},"no_memory":{"type":"integer"},)"
     R"("discarded":{"type":"integer"},"on_the_way":{"type":"integer"}}})"},
    {"orvane/logger", "orvane.Logger",
     R"({"title":"orvane.Logger","type":"object","properties":{)"
     R"("type":{"const":"logger"},"time":{"type":"string","format":"date-time"},)"
     R"("event":{"enum":["appeared","present","changed","gone"]},)"
     R"("app":{"type":"string"},"host_id":{"type":"integer"},"app_id":{"type":"integer"},)"
     R"("instance_id":{"type":"integer"},)"
     R"("kind":{"type":"string"},"number":{"type":"integer"},"host":{"type":"string"},)"
     R"("process":{"type":"string"},"pid":{"type":"integer"},"state":{"type":"string"},)"
     R"("filter_level":{"type":"integer"},"filter_level_name":{"type":"string"},)"
     R"("domain":{"type":"integer"},"verbosities":{"type":"object"},)"
     R"("print_format":{"type":"string"},"before":{"type":"object"},)"
     R"("publisher":{"type":"object"}}})"},
    {"orvane/gap", "orvane.Gap",
     R"({"title":"orvane.Gap","type":"object","properties":{)"
     R"("type":{"const":"gap"},"time":{"type":"string","format":"date-time"},)"
     R"("events":{"type":"integer"}}})"},
}};

inline std::uint16_t mcap_channel_id(std::size_t position) {
    return static_cast<std::uint16_t>(position + 1);
}

}  // namespace orvane::tools

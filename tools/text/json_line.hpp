/// @file json_line.hpp
/// @brief Log messages, loggers and what else a viewer sees, for programs: one JSON object
/// (RFC 8259) and a newline each.
///
/// A line is ASCII, so that it cannot disturb a terminal. Bytes that are not UTF-8 become U+FFFD. A
/// time is in RFC 3339, UTC, with nanoseconds. A kind and names that are not known are empty texts,
/// a process id that is not known is 0.
#pragma once

#include <string>

#include "tools/records/event.hpp"
#include "tools/records/logger_entry.hpp"
#include "tools/records/recorded_event.hpp"

namespace orvane::tools {

/// What is said of a logger: "app", "host_id", "app_id", "instance_id" (if it is known), "kind",
/// "number" (if it is not 1), "host", "process", "pid".
/// @{

/// Members: "type" ("message"), "time", "level", "level_name", the logger's, "category", "message";
/// what another has published in its name has "publisher", an object with what is said of that
/// logger and "authenticated".
std::string json_line(const MessageEvent& event);

/// Members: "type" ("loss"), "time", the logger's, "lost" (the sum of the others), "queue_full",
/// "no_memory", "discarded", "on_the_way".
std::string json_line(const LossEvent& event);

/// Members: "type" ("logger"), "time", "event" (@ref event_name), the logger's,
/// "publisher" as above, those of its State, and for a change "before": an object with the State
/// before it.
std::string json_line(const LoggerEvent& event);

/// Members: "type" ("gap"), "time", "events".
std::string json_line(const RecordingGap& event);

std::string json_line(const RecordedEvent& event);

/// Members: the logger's, "shares_id" (if another logger that is alive has its HOST:APP),
/// "publisher" as above, those of its State: "state", "filter_level", "filter_level_name",
/// "domain", "verbosities" (an object with a member for each category, in lower case),
/// "print_format"; "addresses"; of a logger with statistics "statistics", an object with the
/// members "accepted", "published", "queue_full", "no_memory", "discarded", "queued",
/// "most_queued", "queue_size" and, when it is known, "rate" in messages a second.
std::string json_line(const LoggerEntry& entry);
/// @}

/// An event as a JSON object without a newline that viewers of the schema foxglove.Log understand.
/// A message has that schema's members "timestamp", "level", "message", "name", "file" and "line"
/// too. As "level" is that of the schema then, the message's own one is "orvane_level".
std::string foxglove_json(const RecordedEvent& event);

}  // namespace orvane::tools

/// @file wanted_events.hpp
/// @brief The events that a user asks for, counted.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "tools/records/event.hpp"
#include "tools/records/log_query.hpp"
#include "tools/records/recorded_event.hpp"

namespace orvane::tools {

class WantedEvents {
public:
    explicit WantedEvents(const LogQuery& query) : query_(query) {}

    /// @return those that are asked for, moved from @p events
    std::vector<RecordedEvent> choose(std::span<Event> events);

    /// "12 messages", as many as were chosen.
    std::string messages_text() const;
    /// ", 3 lost" of those asked for, or nothing.
    std::string lost_text() const;

private:
    bool count(const MessageEvent& event);
    bool count(const LossEvent& event);
    bool count(const LoggerEvent& event) const { return query_.matches(event.logger); }

    const LogQuery& query_;
    std::uint64_t messages_ = 0;
    std::uint64_t lost_ = 0;
};

}  // namespace orvane::tools

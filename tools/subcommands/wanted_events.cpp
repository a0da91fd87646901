#include "tools/subcommands/wanted_events.hpp"

#include <fmt/format.h>

#include <utility>
#include <variant>

namespace orvane::tools {

std::vector<RecordedEvent> WantedEvents::choose(std::span<Event> events) {
    std::vector<RecordedEvent> wanted;
    wanted.reserve(events.size());
    for (Event& event : events) {
        std::visit(
            [&](auto& each) {
                if (count(each)) {
                    wanted.emplace_back(std::move(each));
                }
            },
            event);
    }
    return wanted;
}

std::string WantedEvents::messages_text() const {
    return fmt::format("{} message{}", messages_, messages_ == 1 ? "" : "s");
}

std::string WantedEvents::lost_text() const {
    return lost_ > 0 ? fmt::format(", {} lost", lost_) : "";
}

bool WantedEvents::count(const MessageEvent& event) {
    const bool is_wanted = query_.matches(event);
    messages_ += is_wanted ? 1 : 0;
    return is_wanted;
}

bool WantedEvents::count(const LossEvent& event) {
    const bool is_wanted = query_.matches(event.logger);
    lost_ += is_wanted ? event.lost() : 0;
    return is_wanted;
}

}  // namespace orvane::tools

#include "tools/subcommands/display.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <variant>

#include "tools/subcommands/session.hpp"
#include "tools/subcommands/terminal.hpp"
#include "tools/text/cells.hpp"
#include "tools/text/display_text.hpp"
#include "tools/text/json_line.hpp"

namespace orvane::tools {

Display::Display(const DisplayOptions& options)
    : options_(options),
      lines_{{.color = !options.no_color && is_terminal(),
              .utc = options.utc,
              .ids = options.ids,
              .time = options.time}},
      met_(options.query.loggers.size()) {}

Display::Progress Display::show(const std::vector<Event>& events) {
    width_ = terminal_width();
    std::string text;
    for (const Event& event : events) {
        if (is_complete()) {
            break;
        }
        text += text_of(event);
    }
    if (write_out(text) == Status::failed) {
        return Progress::write_failed;
    }
    return is_complete() ? Progress::complete : Progress::goes_on;
}

void Display::meet(const Logger& logger) {
    std::transform(
        options_.query.loggers.begin(), options_.query.loggers.end(), met_.begin(), met_.begin(),
        [&](const LoggerTarget& target, bool met) { return met || target.matches(logger); });
}

std::string Display::text_of(const Event& event) {
    return std::visit(
        [&](const auto& each) -> std::string {
            if constexpr (std::is_same_v<decltype(each), const LoggerEvent&>) {
                return {};
            } else {
                return text_of(each);
            }
        },
        event);
}

std::string Display::text_of(const MessageEvent& event) {
    meet(event.logger);
    if (!options_.query.matches(event)) {
        ++hidden_;
        return {};
    }
    const bool is_via = event.publisher && event.publisher->is_authenticated;
    Count& count = counts_[{event.logger.application,
                            is_via ? event.publisher->logger.application : Application{}}];
    count.name = name_of(event.logger) + via_text(event.publisher);
    ++count.shown;
    ++shown_;
    return options_.json ? json_line(event)
                         : introductions_.meet(event.logger) + lines_.line(event, width_);
}

std::string Display::text_of(const LossEvent& event) {
    if (!options_.query.matches(event.logger)) {
        return {};
    }
    Count& count = counts_[{event.logger.application, {}}];
    count.name = name_of(event.logger);
    count.lost += event.lost();
    lost_ += event.lost();
    return options_.json ? json_line(event) : introductions_.meet(event.logger) + loss_line(event);
}

/// A line for each logger, when there are several.
std::string Display::counts_text() const {
    if (counts_.size() < 2) {
        return {};
    }
    std::vector<Count> counts;
    std::size_t width = 0;
    for (const auto& [sender, count] : counts_) {
        counts.push_back(count);
        width = std::max(width, width_of(count.name));
    }
    std::stable_sort(counts.begin(), counts.end(),
                     [](const Count& a, const Count& b) { return a.shown > b.shown; });
    std::string text;
    for (const Count& count : counts) {
        text += fmt::format("orvane:   {}  {}", padded(count.name, width), count.shown);
        text += count.lost > 0 ? fmt::format(", {} lost\n", count.lost) : "\n";
    }
    return text;
}

std::string Display::summary(double seconds, std::uint64_t earlier) const {
    const auto senders = std::count_if(counts_.begin(), counts_.end(),
                                       [](const auto& each) { return each.second.shown > 0; });
    std::string text =
        fmt::format("orvane: {} message{} of {} application{} in {:.1f} s", shown_,
                    shown_ == 1 ? "" : "s", senders, senders == 1 ? "" : "s", seconds);
    if (hidden_ > 0) {
        text += fmt::format(", {} not asked for", hidden_);
    }
    if (lost_ > 0) {
        text += fmt::format(", {} lost", lost_);
    }
    if (earlier > 0) {
        text += fmt::format(", {} before this viewer", earlier);
    }
    text += '\n' + counts_text();
    for (std::size_t i = 0; i < met_.size(); ++i) {
        if (!met_[i]) {
            text += fmt::format("orvane: no message came from '{}'\n",
                                displayable(options_.query.loggers[i].text));
        }
    }
    return text;
}

}  // namespace orvane::tools

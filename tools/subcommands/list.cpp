#include "tools/subcommands/list.hpp"

#include <fmt/format.h>

#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "tools/subcommands/exit_status.hpp"
#include "tools/subcommands/session.hpp"
#include "tools/subcommands/silence.hpp"
#include "tools/subcommands/terminal.hpp"
#include "tools/text/json_line.hpp"
#include "tools/text/logger_text.hpp"
#include "tools/text/shared_ids.hpp"
#include "tools/text/time_text.hpp"

namespace orvane::tools {
namespace {

std::string listing(const std::vector<LoggerEntry>& loggers, const ListOptions& options) {
    if (!options.json) {
        return logger_table(loggers, {.color = is_terminal() && !options.no_color,
                                      .wide = options.wide,
                                      .width = terminal_width()});
    }
    std::string lines;
    for (const LoggerEntry& entry : loggers) {
        lines += json_line(entry);
    }
    return lines;
}

int list_once(DomainView& view, const ListOptions& options) {
    if (view.discover(nullptr, wait_of(options.timeout_seconds)) == Status::failed) {
        return print_lost_domain();
    }
    const std::vector<LoggerEntry> loggers = view.entries();
    if (loggers.empty()) {
        fmt::print(stderr, "orvane: no logger in domain {}\n", options.domain.id);
    }
    const bool are_others_silent =
        tell_of_silent(options.domain, view.administration().census(), !loggers.empty());
    if (loggers.empty()) {
        return are_others_silent ? exit_failure : exit_success;
    }
    SharedIds ids;
    for (const LoggerEntry& entry : loggers) {
        print_warnings(ids.meet(entry.logger, entry.publisher));
    }
    return write_out(listing(loggers, options)) == Status::ok ? exit_success : exit_failure;
}

/// A line for each change. What the user is warned of is printed.
std::string changes_text(const DomainView& view, const News& news, const ListOptions& options,
                         SharedIds& ids) {
    std::string lines;
    for (const LoggerChange& change : news.changes) {
        const LoggerEvent event = view.event_of(change);
        print_warnings(ids.note(event));
        lines += options.json ? json_line(event) : change_line(event);
    }
    return lines;
}

/// The whole table, drawn over the last one.
std::string screen_text(const DomainView& view, const ListOptions& options) {
    constexpr const char* clear_screen = "\x1b[H\x1b[2J";
    const std::vector<LoggerEntry> loggers = view.entries();
    return fmt::format("{}{} logger{} in domain {}\n\n{}", clear_screen, loggers.size(),
                       loggers.size() == 1 ? "" : "s", options.domain.id,
                       listing(loggers, options));
}

int watch(DomainView& view, const ListOptions& options) {
    const bool redraws = is_terminal() && !options.json;
    SharedIds ids;
    Silence silence{options.domain, [&] { return view.administration().census(); }};
    if (redraws && write_out(screen_text(view, options)) == Status::failed) {
        return exit_failure;
    }
    while (!view.administration().interrupted()) {
        const Result<News> news = view.next(silence.wait(longest_wait));
        if (!news) {
            return print_lost_domain();
        }
        silence.note(!view.loggers().empty());
        // Who watches goes on, whoever else is there.
        static_cast<void>(silence.tell());
        if (news->changes.empty() && !(redraws && news->has_statistics)) {
            continue;
        }
        const std::string text =
            redraws ? screen_text(view, options) : changes_text(view, *news, options, ids);
        if (write_out(text) == Status::failed) {
            return exit_failure;
        }
    }
    return exit_success;
}

}  // namespace

int list(const ListOptions& options) {
    return with_domain(options.domain, DomainUse::read_states, [&](DomainView& view) {
        return options.watch ? watch(view, options) : list_once(view, options);
    });
}

}  // namespace orvane::tools

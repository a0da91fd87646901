#include "tools/subcommands/list.hpp"

#include <fmt/format.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "tools/subcommands/exit_status.hpp"
#include "tools/subcommands/session.hpp"
#include "tools/text/json_line.hpp"
#include "tools/text/logger_text.hpp"
#include "tools/text/time_text.hpp"

namespace orvane::tools {
namespace {

std::string listing(const std::vector<LoggerState>& loggers, const ListOptions& options,
                    bool is_terminal) {
    if (!options.json) {
        return logger_table(loggers, {.color = is_terminal && !options.no_color});
    }
    std::string lines;
    for (const LoggerState& logger : loggers) {
        lines += json_line(logger);
    }
    return lines;
}

int list_once(DomainView& view, const ListOptions& options, bool is_terminal) {
    if (view.discover(nullptr, wait_of(options.timeout_seconds)) == Status::failed) {
        return print_lost_domain();
    }
    const std::vector<LoggerState> loggers = view.loggers();
    if (loggers.empty()) {
        fmt::print(stderr, "orvane: no logger in domain {}\n", options.domain_id);
        return exit_success;
    }
    return write_out(listing(loggers, options, is_terminal)) == Status::ok ? exit_success
                                                                           : exit_failure;
}

/// A line for each change.
std::string changes_text(const News& news, const ListOptions& options) {
    const std::int64_t now = wall_clock();
    std::string lines;
    for (const LoggerChange& change : news.changes) {
        lines += options.json ? json_line(change, now) : change_line(change, now);
    }
    return lines;
}

/// The whole table, drawn over the last one.
std::string screen_text(const DomainView& view, const ListOptions& options) {
    constexpr const char* clear_screen = "\x1b[H\x1b[2J";
    const std::vector<LoggerState> loggers = view.loggers();
    return fmt::format("{}{} logger{} in domain {}\n\n{}", clear_screen, loggers.size(),
                       loggers.size() == 1 ? "" : "s", options.domain_id,
                       listing(loggers, options, true));
}

int watch(DomainView& view, const ListOptions& options, bool is_terminal) {
    const bool redraws = is_terminal && !options.json;
    if (redraws && write_out(screen_text(view, options)) == Status::failed) {
        return exit_failure;
    }
    while (!view.administration().interrupted()) {
        const Result<News> news = view.next(longest_wait);
        if (!news) {
            return print_lost_domain();
        }
        if (news->changes.empty()) {
            continue;
        }
        const std::string text =
            redraws ? screen_text(view, options) : changes_text(*news, options);
        if (write_out(text) == Status::failed) {
            return exit_failure;
        }
    }
    return exit_success;
}

}  // namespace

int list(const ListOptions& options) {
    const bool is_terminal = isatty(STDOUT_FILENO) != 0;
    return with_domain(options.domain_id, [&](DomainView& view) {
        return options.watch ? watch(view, options, is_terminal)
                             : list_once(view, options, is_terminal);
    });
}

}  // namespace orvane::tools

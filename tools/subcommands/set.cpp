#include "tools/subcommands/set.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdio>

#include "tools/domain/command_round.hpp"
#include "tools/subcommands/exit_status.hpp"
#include "tools/subcommands/session.hpp"
#include "tools/subcommands/silence.hpp"
#include "tools/text/display_text.hpp"
#include "tools/text/logger_text.hpp"
#include "tools/text/shared_ids.hpp"

namespace orvane::tools {
namespace {

void print_no_target(DomainView& view, const SetOptions& options) {
    std::string text = fmt::format("orvane: no logger of domain {} is '{}'", options.domain.id,
                                   displayable(options.target.text));
    const std::vector<LoggerEntry> loggers = view.entries();
    text += loggers.empty() ? "; there is none at all\n" : "; there are:\n";
    if (!loggers.empty()) {
        text += logger_table(loggers, {});
    }
    std::fputs(text.c_str(), stderr);
    tell_of_silent(options.domain, view.administration().census(), !loggers.empty());
}

/// Warns of those that the command has reached.
void warn_of_shared_ids(const DomainView& view, const std::vector<CommandOutcome>& outcomes) {
    SharedIds ids;
    for (const LoggerEntry& entry : view.entries()) {
        const bool is_reached =
            std::any_of(outcomes.begin(), outcomes.end(), [&](const CommandOutcome& outcome) {
                return outcome.before.application == entry.state.application;
            });
        if (is_reached) {
            print_warnings(ids.meet(entry.logger, entry.publisher));
        }
    }
}

int set_in(DomainView& view, const SetOptions& options) {
    const std::chrono::milliseconds longest = wait_of(options.timeout_seconds);
    if (view.discover(&options.target, longest) == Status::failed) {
        return print_lost_domain();
    }
    const std::vector<LoggerState> targets = view.loggers(options.target);
    if (view.administration().interrupted()) {
        fmt::print(stderr, "orvane: interrupted before anything was sent\n");
        return exit_failure;
    }
    if (targets.empty()) {
        print_no_target(view, options);
        return exit_failure;
    }
    const auto start = view.administration().now();
    const auto outcomes = run_command(view, targets, options.command, longest);
    if (!outcomes) {
        return print_lost_domain();
    }
    // A signal may have cut it short.
    const auto waited = std::min(longest, std::chrono::round<std::chrono::milliseconds>(
                                              view.administration().now() - start));
    std::string lines;
    for (const CommandOutcome& outcome : *outcomes) {
        lines += outcome_line(outcome, view.directory().logger(outcome.before.application),
                              options.command, waited);
    }
    warn_of_shared_ids(view, *outcomes);
    const bool all_ok = std::all_of(
        outcomes->begin(), outcomes->end(),
        [](const CommandOutcome& outcome) { return outcome.result == QEL_KX_COMMAND_RESULT_OK; });
    return write_out(lines) == Status::ok && all_ok ? exit_success : exit_failure;
}

}  // namespace

int set(const SetOptions& options) {
    return with_domain(options.domain, DomainUse::command,
                       [&](DomainView& view) { return set_in(view, options); });
}

}  // namespace orvane::tools

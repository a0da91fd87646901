#include "tools/text/logger_text.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>
#include <optional>
#include <string_view>
#include <utility>

#include "tools/text/application_text.hpp"
#include "tools/text/cells.hpp"
#include "tools/text/display_text.hpp"
#include "tools/text/level_names.hpp"
#include "tools/text/logger_name.hpp"
#include "tools/text/setting_names.hpp"
#include "tools/text/settings_text.hpp"
#include "tools/text/time_text.hpp"

namespace orvane::tools {
namespace {

using Row = std::vector<std::string>;
using Widths = std::vector<std::size_t>;

constexpr std::size_t gap = 2;  ///< cells between columns
// Columns: the names may be cut, and those up to the logger are always shown.
constexpr std::size_t name_columns = 3;
constexpr std::size_t kept_columns = 5;
constexpr std::size_t state_column = 5;

/// Columns that are not always there.
struct Columns {
    bool traffic;
    bool addresses;
};

std::string or_dash(const std::string& text) {
    return text.empty() ? "-" : text;
}

std::string kind_of(const Logger& logger) {
    return logger.kind.empty() ? "-" : name_of(logger);
}

/// "0a141e28:0000c350", or with the instance id where another logger has that, too.
std::string id_text(const Logger& logger, bool shares_id) {
    return shares_id ? format_instance(logger.application) : format_application(logger.application);
}

/// "0a141e28:0000c350 pump".
std::string identity_of(const Logger& logger, bool shares_id) {
    return id_text(logger, shares_id) + ' ' + kind_of(logger);
}

Row headings(const Columns& shown) {
    Row row{"KIND", "HOST", "PROCESS", "PID", "LOGGER", "STATE", "LEVEL"};
    if (shown.traffic) {
        row.insert(row.end(), {"RATE", "QUEUE", "LOST"});
    }
    row.emplace_back("DOMAIN");
    for (int category = 0; category < ORVANE_QEL_LOGGER_CATEGORY_COUNT; ++category) {
        row.emplace_back(middleware_category_name(static_cast<MiddlewareCategory>(category)));
    }
    row.emplace_back("FORMAT");
    if (shown.addresses) {
        row.emplace_back("ADDRESSES");
    }
    return row;
}

/// Messages a second, in the queue of how many, and lost by the logger.
void append_traffic(Row& row, const std::optional<LoggerTraffic>& traffic) {
    if (!traffic) {
        row.insert(row.end(), {"-", "-", "-"});
        return;
    }
    const LoggerStatistics& last = traffic->last;
    row.push_back(traffic->rate ? fmt::format("{:.0f}/s", *traffic->rate) : "-");
    row.push_back(fmt::format("{}/{}", last.queued, last.queue_size));
    row.push_back(std::to_string(last.now.lost()));
}

Row row_of(const LoggerEntry& entry, const Columns& shown) {
    const LoggerState& state = entry.state;
    const Logger& logger = entry.logger;
    Row row{kind_of(logger) + via_text(entry.publisher),
            or_dash(displayable(logger.host)),
            or_dash(displayable(logger.process)),
            logger.process_id == 0 ? "-" : std::to_string(logger.process_id),
            id_text(logger, entry.shares_id) + (entry.shares_id ? "*" : ""),
            std::string{state_name(state.state)},
            filter_level_text(state.filter_level)};
    if (shown.traffic) {
        append_traffic(row, entry.traffic);
    }
    row.push_back(std::to_string(state.domain_id));
    for (const Verbosity verbosity : state.verbosities) {
        row.emplace_back(verbosity_name(verbosity));
    }
    row.emplace_back(print_format_name(state.print_format));
    if (shown.addresses) {
        row.push_back(or_dash(displayable(entry.addresses)));
    }
    return row;
}

std::size_t total(const Widths& widths) {
    return std::accumulate(widths.begin(), widths.end(), gap * (widths.size() - 1));
}

/// Makes the columns fit into the width, as far as possible, from the width that each would like.
Widths fitting(Widths widths, std::size_t width) {
    constexpr std::size_t least_name = 8;
    Widths least = widths;
    for (std::size_t column = 0; column < name_columns; ++column) {
        least[column] = std::min(widths[column], least_name);
    }
    while (least.size() > kept_columns && total(least) > width) {
        least.pop_back();
    }
    widths.resize(least.size());
    for (std::size_t excess = total(widths); excess > std::max(width, total(least)); --excess) {
        --*std::max_element(widths.begin(), widths.begin() + name_columns);
    }
    return widths;
}

/// The escape sequence (ECMA-48 SGR) for a logger's state.
std::string_view color_of(StateKind state) {
    switch (state) {
        case QEL_KX_STATE_OPERATIONAL:
            return "\x1b[32m";
        case QEL_KX_STATE_INITIALIZING:
            return "\x1b[33m";
        case QEL_KX_STATE_NONOPERATIONAL:
        case QEL_KX_STATE_SHUTTING_DOWN:
            break;
    }
    return "\x1b[31m";
}

void append_row(std::string& table, const Row& row, const Widths& widths,
                std::string_view state_color) {
    for (std::size_t column = 0; column < widths.size(); ++column) {
        const bool painted = column == state_column && !state_color.empty();
        const std::string cell = shortened(row[column], widths[column]);
        table += painted ? state_color : std::string_view{};
        table += cell;
        table += painted ? "\x1b[0m" : "";
        if (column + 1 < widths.size()) {
            table.append(widths[column] + gap - width_of(cell), ' ');
        }
    }
    table += '\n';
}

std::string refusal(const CommandOutcome& outcome) {
    std::string text = "refused";
    if (!outcome.message.empty()) {
        text += ": ";
        append_displayable(text, outcome.message);
    }
    return text;
}

std::string silence(const CommandOutcome& outcome, std::chrono::milliseconds waited) {
    const std::chrono::duration<double> seconds = waited;
    return outcome.receives_commands
               ? fmt::format("no answer within {} s", seconds.count())
               : fmt::format("takes no commands: it has shown no reader of them within {} s",
                             seconds.count());
}

}  // namespace

std::string_view event_name(LoggerChange::Kind kind) {
    switch (kind) {
        case LoggerChange::Kind::appeared:
            return "appeared";
        case LoggerChange::Kind::present:
            return "present";
        case LoggerChange::Kind::changed:
            return "changed";
        case LoggerChange::Kind::gone:
            break;
    }
    return "gone";
}

std::string logger_table(const std::vector<LoggerEntry>& loggers, const TableStyle& style) {
    const Columns shown{.traffic = std::any_of(loggers.begin(), loggers.end(),
                                               [](const auto& each) { return each.traffic; }),
                        .addresses = style.wide};
    std::vector<Row> rows{headings(shown)};
    for (const LoggerEntry& entry : loggers) {
        rows.push_back(row_of(entry, shown));
    }
    Widths widths(rows.front().size());
    for (const Row& row : rows) {
        for (std::size_t column = 0; column < row.size(); ++column) {
            widths[column] = std::max(widths[column], width_of(row[column]));
        }
    }
    if (style.width > 0 && !style.wide) {
        widths = fitting(std::move(widths), style.width);
    }
    std::string table;
    append_row(table, rows.front(), widths, {});
    for (std::size_t i = 0; i < loggers.size(); ++i) {
        append_row(table, rows[i + 1], widths,
                   style.color ? color_of(loggers[i].state.state) : std::string_view{});
    }
    if (const std::size_t missing = rows.front().size() - widths.size(); missing > 0) {
        table += fmt::format("{} more column{} with --wide\n", missing, missing == 1 ? "" : "s");
    }
    if (std::any_of(loggers.begin(), loggers.end(), [](auto& each) { return each.shares_id; })) {
        table += "* shares HOST:APP with another logger: a command to one reaches both\n";
    }
    return table;
}

std::string change_text(const LoggerEvent& event) {
    const LoggerChange& change = event.change;
    switch (change.kind) {
        case LoggerChange::Kind::appeared:
        case LoggerChange::Kind::present: {
            const std::string process = process_text(event.logger);
            return fmt::format("{}, filter level {}{}{}", state_name(change.now.state),
                               filter_level_text(change.now.filter_level),
                               process.empty() ? "" : ", ", process);
        }
        case LoggerChange::Kind::changed: {
            const std::string settings = difference_text(change.before, change.now);
            return settings.empty() ? "application kind or domain" : settings;
        }
        case LoggerChange::Kind::gone:
            break;
    }
    return change.now.state == QEL_KX_STATE_NONOPERATIONAL ? "ended" : "lost";
}

std::string change_line(const LoggerEvent& event) {
    return fmt::format("{} {:<8} {}{}  {}\n", display_time(event.nanoseconds, false),
                       event_name(event.change.kind), identity_of(event.logger, false),
                       via_text(event.publisher), change_text(event));
}

std::string outcome_line(const CommandOutcome& outcome, const Logger& logger,
                         const Command& command, std::chrono::milliseconds waited) {
    const std::string now = settings_text(command, outcome.now);
    std::string text;
    if (!outcome.result) {
        text = outcome.alive ? silence(outcome, waited) : "gone before it answered";
    } else if (*outcome.result == QEL_KX_COMMAND_RESULT_ERROR) {
        text = fmt::format("{} ({})", refusal(outcome), now);
    } else if (*outcome.result == QEL_KX_COMMAND_RESULT_NOT_SUPPORTED) {
        text = fmt::format("not supported ({})", now);
    } else if (is_in_force(command, outcome.now)) {
        text = effect_text(command, outcome.before, outcome.now);
    } else {
        text = fmt::format("answered OK, but its State says: {}", now);
    }
    return fmt::format("{}  {}{}\n", identity_of(logger, outcome.shares_id), text,
                       outcome.is_bystander ? "; it obeys, too, as it shares HOST:APP" : "");
}

}  // namespace orvane::tools

#include "tools/text/logger_text.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <string_view>

#include "tools/text/application_text.hpp"
#include "tools/text/display_text.hpp"
#include "tools/text/level_names.hpp"
#include "tools/text/setting_names.hpp"
#include "tools/text/settings_text.hpp"
#include "tools/text/time_text.hpp"

namespace orvane::tools {
namespace {

constexpr std::size_t column_count = 6 + ORVANE_QEL_LOGGER_CATEGORY_COUNT;
constexpr std::size_t state_column = 2;
using Row = std::array<std::string, column_count>;

std::string displayed_kind(const LoggerState& logger) {
    std::string kind;
    append_displayable(kind, logger.kind);
    return kind.empty() ? "-" : kind;
}

/// "0a141e28:0000c350 pump".
std::string displayed_name(const LoggerState& logger) {
    return format_application(logger.application) + ' ' + displayed_kind(logger);
}

Row headings() {
    Row row{"LOGGER", "KIND", "STATE", "LEVEL", "DOMAIN"};
    for (int category = 0; category < ORVANE_QEL_LOGGER_CATEGORY_COUNT; ++category) {
        row[5 + static_cast<std::size_t>(category)] =
            middleware_category_name(static_cast<MiddlewareCategory>(category));
    }
    row.back() = "FORMAT";
    return row;
}

Row row_of(const LoggerState& logger) {
    Row row{format_application(logger.application), displayed_kind(logger),
            std::string{state_name(logger.state)}, filter_level_text(logger.filter_level),
            std::to_string(logger.domain_id)};
    std::transform(logger.verbosities.begin(), logger.verbosities.end(), row.begin() + 5,
                   [](Verbosity verbosity) { return std::string{verbosity_name(verbosity)}; });
    row.back() = print_format_name(logger.print_format);
    return row;
}

/// Cells that a text takes, for texts whose characters take one each.
std::size_t width_of(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char byte) {
        const bool continues = (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
        return !continues;
    }));
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

void append_row(std::string& table, const Row& row,
                const std::array<std::size_t, column_count>& widths, std::string_view state_color) {
    for (std::size_t column = 0; column < column_count; ++column) {
        const bool painted = column == state_column && !state_color.empty();
        table += painted ? state_color : std::string_view{};
        table += row[column];
        table += painted ? "\x1b[0m" : "";
        if (column + 1 < column_count) {
            table.append(widths[column] + 2 - width_of(row[column]), ' ');
        }
    }
    table += '\n';
}

std::string event_details(const LoggerChange& change) {
    switch (change.kind) {
        case LoggerChange::Kind::appeared:
            return fmt::format("{}, filter level {}", state_name(change.now.state),
                               filter_level_text(change.now.filter_level));
        case LoggerChange::Kind::changed: {
            const std::string settings = difference_text(change.before, change.now);
            return settings.empty() ? "application kind or domain" : settings;
        }
        case LoggerChange::Kind::gone:
            break;
    }
    return change.now.state == QEL_KX_STATE_NONOPERATIONAL ? "ended" : "lost";
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
        case LoggerChange::Kind::changed:
            return "changed";
        case LoggerChange::Kind::gone:
            break;
    }
    return "gone";
}

std::string logger_table(const std::vector<LoggerState>& loggers, const TableStyle& style) {
    std::vector<Row> rows{headings()};
    std::transform(loggers.begin(), loggers.end(), std::back_inserter(rows), row_of);
    std::array<std::size_t, column_count> widths{};
    for (const Row& row : rows) {
        for (std::size_t column = 0; column < column_count; ++column) {
            widths[column] = std::max(widths[column], width_of(row[column]));
        }
    }
    std::string table;
    append_row(table, rows.front(), widths, {});
    for (std::size_t i = 0; i < loggers.size(); ++i) {
        append_row(table, rows[i + 1], widths,
                   style.color ? color_of(loggers[i].state) : std::string_view{});
    }
    return table;
}

std::string change_line(const LoggerChange& change, std::int64_t nanoseconds) {
    return fmt::format("{} {:<8} {}  {}\n", display_time(nanoseconds, false),
                       event_name(change.kind), displayed_name(change.now), event_details(change));
}

std::string outcome_line(const CommandOutcome& outcome, const Command& command,
                         std::chrono::milliseconds waited) {
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
    return fmt::format("{}  {}\n", displayed_name(outcome.before), text);
}

}  // namespace orvane::tools

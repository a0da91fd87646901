#include "tools/text/log_line.hpp"

#include <fmt/format.h>

#include <iterator>
#include <string_view>

#include "orvane/core.h"
#include "tools/text/application_text.hpp"
#include "tools/text/display_text.hpp"
#include "tools/text/level_names.hpp"
#include "tools/text/time_text.hpp"

namespace orvane::tools {
namespace {

/// The escape sequence (ECMA-48 SGR) for a level; levels between two names look like the less
/// severe one.
std::string_view color_of(std::int32_t level) {
    if (level <= QEL_KX_LEVEL_SEVERE) {
        return "\x1b[1;31m";
    }
    if (level <= QEL_KX_LEVEL_ERROR) {
        return "\x1b[31m";
    }
    if (level <= QEL_KX_LEVEL_WARNING) {
        return "\x1b[33m";
    }
    if (level <= QEL_KX_LEVEL_NOTICE) {
        return "\x1b[36m";
    }
    return level <= QEL_KX_LEVEL_INFO ? "" : "\x1b[2m";
}

}  // namespace

std::string text_line(const LogRecord& record, const LineStyle& style) {
    const std::string_view color = style.color ? color_of(record.level) : std::string_view{};

    std::string line{color};
    fmt::format_to(std::back_inserter(line), "{} {:<7} {} ",
                   display_time(record.nanoseconds, style.utc), level_text(record.level),
                   format_application(record.application));
    if (!record.category.empty()) {
        line += '[';
        append_displayable(line, record.category);
        line += "] ";
    }
    append_displayable(line, record.message);
    if (!color.empty()) {
        line += "\x1b[0m";
    }
    line += '\n';
    return line;
}

}  // namespace orvane::tools

#include "tools/export/severity.hpp"

#include <algorithm>
#include <iterator>

#include "orvane/core.h"

namespace orvane::tools {

Severity severity_of(std::int32_t level) {
    // The priorities 0 and 1 are about the whole system; journald shows 0 on every terminal.
    static constexpr struct {
        std::int32_t least_severe;
        Severity severity;
    } rows[] = {
        {QEL_KX_LEVEL_FATAL, {.otlp = 21, .syslog = 2}},    // FATAL, critical
        {QEL_KX_LEVEL_SEVERE, {.otlp = 18, .syslog = 2}},   // ERROR2, critical
        {QEL_KX_LEVEL_ERROR, {.otlp = 17, .syslog = 3}},    // ERROR, error
        {QEL_KX_LEVEL_WARNING, {.otlp = 13, .syslog = 4}},  // WARN, warning
        {QEL_KX_LEVEL_NOTICE, {.otlp = 10, .syslog = 5}},   // INFO2, notice
        {QEL_KX_LEVEL_INFO, {.otlp = 9, .syslog = 6}},      // INFO, informational
        {QEL_KX_LEVEL_DEBUG, {.otlp = 5, .syslog = 7}},     // DEBUG, debug
    };
    constexpr Severity trace{.otlp = 1, .syslog = 7};
    const auto* const row = std::find_if(std::begin(rows), std::end(rows), [&](const auto& each) {
        return level <= each.least_severe;
    });
    return row == std::end(rows) ? trace : row->severity;
}

}  // namespace orvane::tools

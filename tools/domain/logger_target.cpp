#include "tools/domain/logger_target.hpp"

#include <fnmatch.h>

#include "tools/text/application_text.hpp"

namespace orvane::tools {

std::optional<LoggerTarget> LoggerTarget::parse(std::string_view text) {
    if (text.empty()) {
        return std::nullopt;
    }
    LoggerTarget target;
    target.application_ = parse_application(text);
    target.kinds_ = text;
    return target;
}

bool LoggerTarget::matches(const LoggerState& logger) const {
    const bool lives =
        logger.state == QEL_KX_STATE_INITIALIZING || logger.state == QEL_KX_STATE_OPERATIONAL;
    if (application_) {
        return lives && logger.application == *application_;
    }
    return lives && fnmatch(kinds_.c_str(), logger.kind.c_str(), 0) == 0;
}

}  // namespace orvane::tools

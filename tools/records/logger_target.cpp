#include "tools/records/logger_target.hpp"

#include <fnmatch.h>

namespace orvane::tools {
namespace {

bool is_like(const std::string& text, const std::string& pattern) {
    return fnmatch(pattern.c_str(), text.c_str(), 0) == 0;
}

}  // namespace

bool LoggerTarget::matches(const Logger& logger) const {
    if (application) {
        return share_host_and_app(logger.application, *application) &&
               (application->instance_id == 0 ||
                application->instance_id == logger.application.instance_id);
    }
    const bool meets_all = is_like(logger.kind, kinds) && (!number || logger.number == *number) &&
                           (!hosts || is_like(logger.host, *hosts));
    return meets_all || is_like(logger.kind, text);
}

}  // namespace orvane::tools

#include "tools/records/log_query.hpp"

#include <fnmatch.h>

namespace orvane::tools {

bool LogQuery::matches(const LogRecord& record) const {
    if (level && record.level > *level) {
        return false;
    }
    if (application && record.application != *application) {
        return false;
    }
    if (category && fnmatch(category->c_str(), record.category.c_str(), 0) != 0) {
        return false;
    }
    return record.message.find(contains) != std::string::npos;
}

}  // namespace orvane::tools

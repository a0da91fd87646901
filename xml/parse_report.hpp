#pragma once

#include "pexa/xml.h"

namespace orvane::xml {

/// Where a conversion says what is wrong with a text.
class ParseReport {
public:
    ParseReport(const char* function_name, DDS_XMLContext* context,
                DDS_XMLParseErrorFunction parse_error_function) noexcept
        : function_name_(function_name),
          context_(context),
          parse_error_function_(parse_error_function) {}

    /// Reports a text that is refused and marks the context.
    void refuse(const char* message) const {
        if (parse_error_function_ != nullptr) {
            parse_error_function_(message, function_name_,
                                  DDS_XMLContext_get_current_line_number(context_));
        }
        if (context_ != nullptr) {
            context_->error = 1;
        }
    }

private:
    const char* function_name_;
    DDS_XMLContext* context_;
    DDS_XMLParseErrorFunction parse_error_function_;
};

}  // namespace orvane::xml

/// @file parse_report.hpp
/// @brief The text of an element, and the report of a text that is refused.
#pragma once

#include "pexa/xml.h"

namespace orvane::xml {

/// Where a conversion reports the text that it refuses.
class ParseReport {
public:
    ParseReport(const char* function_name, DDS_XMLContext* context,
                DDS_XMLParseErrorFunction parse_error_function) noexcept
        : function_name_(function_name),
          context_(context),
          parse_error_function_(parse_error_function) {}

    /// Reports the reason of a refusal and sets the context's error indicator.
    void refuse(const char* reason) const {
        if (parse_error_function_ != nullptr) {
            parse_error_function_(reason, function_name_,
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

/// The text of an element that has ended, with the parse that it belongs to.
struct ElementText {
    const char* text;
    DDS_XMLContext* context;
    DDS_XMLParseErrorFunction parse_error_function;

    ParseReport report_as(const char* function_name) const noexcept {
        return {function_name, context, parse_error_function};
    }
};

}  // namespace orvane::xml

#include "platform/dds/xml/truth_value.hpp"

#include <algorithm>
#include <array>

#include "pexa/xml.h"
#include "platform/dds/xml/parser.hpp"
#include "platform/dds/xml/white_space.hpp"

namespace pexa::dds::xml {
namespace {

struct TruthName {
    std::string_view name;
    bool value;
};

constexpr std::array<TruthName, 6> names{
    {{"true", true}, {"yes", true}, {"1", true}, {"false", false}, {"no", false}, {"0", false}}};

// Not by locale: a configuration means the same everywhere.
constexpr char to_lower(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

/// Stores the value of a text. A text that is none is a fault of the parse.
DDS_Boolean read_truth_value(DDS_Boolean* flag, const char* text, DDS_XMLContext* context) {
    const auto value = to_truth_value(text != nullptr ? text : "");
    if (flag != nullptr && value) {
        *flag = *value ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
        return DDS_BOOLEAN_TRUE;
    }
    add_current_fault("DDS_XMLHelper_str_to_boolean", truth_value_expected,
                      context != nullptr ? context->line : 0, text);
    if (context != nullptr) {
        context->error = 1;
    }
    return DDS_BOOLEAN_FALSE;
}

}  // namespace

std::optional<bool> to_truth_value(std::string_view text) {
    const std::string_view value = trimmed(text);
    const auto is_value = [&](const TruthName& row) {
        return std::equal(value.begin(), value.end(), row.name.begin(), row.name.end(),
                          [](char given, char known) { return to_lower(given) == known; });
    };
    const auto* row = std::find_if(names.begin(), names.end(), is_value);
    return row != names.end() ? std::optional(row->value) : std::nullopt;
}

}  // namespace pexa::dds::xml

DDS_Boolean DDS_XMLHelper_str_to_boolean(DDS_Boolean* flag, const char* text,
                                         DDS_XMLContext* context) {
    return pexa::dds::xml::read_truth_value(flag, text, context);
}

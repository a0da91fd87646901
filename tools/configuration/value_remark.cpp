#include "tools/configuration/value_remark.hpp"

#include <fmt/format.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "pexa/string.h"

namespace orvane::tools {
namespace {

/// @return the number that the library has stored last; nothing for an option that is no number.
std::optional<DDS_Long> stored_number(xml::ValueType type, QEL_KX_Options& options) {
    DDS_LongSeq& cpus = options.thread.cpu_list;
    switch (type) {
        case xml::ValueType::FilterLevel:
            return options.filter_level;
        case xml::ValueType::PositiveNumber:
            return options.queue_size;
        case xml::ValueType::Priority:
            return options.thread.priority;
        case xml::ValueType::StackSize:
            return options.thread.stack_size;
        case xml::ValueType::CpuList:
            return *DDS_LongSeq_get_reference(&cpus, DDS_LongSeq_get_length(&cpus) - 1);
        case xml::ValueType::NoElement:
        case xml::ValueType::TruthValue:
        case xml::ValueType::Mask:
        case xml::ValueType::CpuRotation:
        case xml::ValueType::ThreadSettings:
            break;
    }
    return std::nullopt;
}

bool is_decimal(xml::ValueType type) {
    return type == xml::ValueType::FilterLevel || type == xml::ValueType::Priority;
}

/// A name of a priority other than the default's.
bool is_other_priority(const xml::OptionDescription& option, const std::string& name) {
    if (option.type != xml::ValueType::Priority) {
        return false;
    }
    const std::size_t length = std::strlen(option.by_default);
    return name.size() < length ||
           MOSKString_iCompare(name.c_str() + name.size() - length, option.by_default) != 0;
}

/// An octal number that would be another one without its 0.
bool is_octal(const std::string& text, long long number) {
    return text.find_first_of("xX") == std::string::npos &&
           std::strtoll(text.c_str(), nullptr, 10) != number;
}

/// A level that is more severe than the most severe name, but not SILENT.
bool stops_all_names(xml::ValueType type, DDS_Long level) {
    return type == xml::ValueType::FilterLevel && level > QEL_KX_LEVEL_SILENT &&
           level < QEL_KX_LEVEL_FATAL;
}

/// @return why a text that begins with a number means another one, or NULL.
const char* reason_of_change(const std::string& text, const char* end, long long number,
                             DDS_Long stored, bool has_prefix) {
    if (*end != '\0') {
        return "the text behind the number is ignored";
    }
    if (number != stored) {
        return "only 32 bits of the number are kept";
    }
    return has_prefix && is_octal(text, number) ? "a number behind 0 is octal" : nullptr;
}

}  // namespace

std::optional<std::string> value_remark(const xml::OptionDescription& option,
                                        const std::string& text, QEL_KX_Options& options) {
    const auto stored = stored_number(option.type, options);
    if (!stored) {
        return std::nullopt;
    }
    const bool decimal = is_decimal(option.type);
    char* end = nullptr;
    const long long number = std::strtoll(text.c_str(), &end, decimal ? 10 : 0);
    if (end == text.c_str() && is_other_priority(option, text)) {
        return fmt::format("{} means {}, expected a number for another priority", quoted(text),
                           option.by_default);
    }
    if (end == text.c_str()) {
        return std::nullopt;
    }
    const char* reason = reason_of_change(text, end, number, *stored, !decimal);
    if (reason == nullptr && stops_all_names(option.type, *stored)) {
        return fmt::format("{} stops every level that has a name, expected {}", quoted(text),
                           expected_text(option));
    }
    if (reason == nullptr) {
        return std::nullopt;
    }
    return fmt::format("{} becomes {}: {}, expected {}", quoted(text), *stored, reason,
                       expected_text(option));
}

std::string quoted(const std::string& text) {
    constexpr std::size_t longest = 60;
    return text.size() <= longest ? "\"" + text + "\"" : "\"" + text.substr(0, longest) + "...\"";
}

std::string expected_text(const xml::OptionDescription& option) {
    std::string text = option.range;
    std::erase(text, '`');
    return text;
}

}  // namespace orvane::tools

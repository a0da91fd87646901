#include "tools/text/target_text.hpp"

#include <fmt/format.h>

#include <cstdint>

#include "tools/text/application_text.hpp"
#include "tools/text/named_numbers.hpp"

namespace orvane::tools {
namespace {

/// Cuts what is behind the last @p mark from @p text, with the mark. @return nothing without a mark
std::optional<std::string_view> cut_behind(char mark, std::string_view& text) {
    const std::size_t place = text.rfind(mark);
    if (place == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view rest = text.substr(place + 1);
    text = text.substr(0, place);
    return rest;
}

/// Fills @p target from a text that is no HOST:APP. @return what was expected, empty when all was
/// there
std::string_view read_conditions(std::string_view text, LoggerTarget& target) {
    if (const auto hosts = cut_behind('@', text)) {
        if (hosts->empty()) {
            return "the name of a host or a pattern expected behind '@'";
        }
        target.hosts = *hosts;
    }
    if (const auto digits = cut_behind('#', text)) {
        target.number = parse_number<std::uint32_t>(*digits, 10);
        if (!target.number || *target.number == 0) {
            return "a number from 1 on expected behind '#'";
        }
    }
    target.kinds = text;
    return text.empty() ? "an application kind or a pattern expected in front, say *" : "";
}

}  // namespace

std::optional<LoggerTarget> parse_target(std::string_view text, std::string& error) {
    LoggerTarget target;
    target.text = text;
    target.application = parse_application(text);
    std::string_view expected;
    if (text.empty()) {
        expected = "HOST:APP in hexadecimal, KIND, KIND@HOST or KIND#NUMBER expected";
    } else if (!target.application) {
        expected = read_conditions(text, target);
    }
    if (expected.empty()) {
        return target;
    }
    error = fmt::format("'{}' is no target: {}", text, expected);
    return std::nullopt;
}

}  // namespace orvane::tools

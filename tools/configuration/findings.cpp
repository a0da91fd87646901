#include "tools/configuration/findings.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <utility>

#include "tools/text/display_text.hpp"

namespace orvane::tools {
namespace {

std::string joined(const Finding& finding) {
    return finding.element.empty() ? finding.text : finding.element + ": " + finding.text;
}

}  // namespace

void Findings::add(Finding finding) {
    if (!said_.emplace(finding.line, joined(finding)).second) {
        return;
    }
    if (finding.severity == Severity::error) {
        places_of_errors_.emplace(finding.line, finding.element);
    }
    findings_.push_back(std::move(finding));
}

bool Findings::has_error_about(int line, const std::string& element) const {
    return places_of_errors_.contains({line, element});
}

bool Findings::has_warnings() const {
    const auto is_warning = [](const Finding& each) { return each.severity == Severity::warning; };
    return std::any_of(findings_.begin(), findings_.end(), is_warning);
}

void Findings::print(const std::string& file_name) const {
    std::vector<Finding> listed = findings_;
    const auto by_severity = [](const Finding& a, const Finding& b) {
        return std::pair(a.severity, a.line) < std::pair(b.severity, b.line);
    };
    const auto by_line = [](const Finding& a, const Finding& b) { return a.line < b.line; };
    std::stable_sort(listed.begin(), listed.end(), by_severity);
    listed.resize(std::min(listed.size(), longest_list));
    std::stable_sort(listed.begin(), listed.end(), by_line);
    for (const Finding& finding : listed) {
        const char* element_end = finding.element.empty() ? "" : ": ";
        const char* mark = finding.severity == Severity::warning ? "warning: " : "";
        print_error(fmt::format("{}:{}: {}{}{}{}", file_name, finding.line, finding.element,
                                element_end, mark, finding.text));
    }
    if (const std::size_t more = findings_.size() - listed.size() + unnamed_; more != 0) {
        print_error(fmt::format("{}: {} more problems", file_name, more));
    }
}

void print_error(std::string_view text) {
    std::string line;
    append_displayable(line, text);
    fmt::print(stderr, "{}\n", line);
}

}  // namespace orvane::tools

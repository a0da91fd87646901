/// @file findings.hpp
/// @brief What is said about a configuration file.
#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orvane::tools {

enum class Severity {
    error,
    warning,  ///< the library accepts it, but it can hardly be meant
};

/// One line about a file. Its parts may hold any character.
struct Finding {
    Severity severity;
    int line;             ///< 0 for the whole file
    std::string element;  ///< empty for none
    std::string text;
};

/// The findings about one file.
class Findings {
public:
    /// Most findings that are printed; errors come before warnings.
    static constexpr std::size_t longest_list = 100;

    /// Ignores what has been said before.
    void add(Finding finding);
    /// Adds errors of which nothing is known but their number.
    void add_unnamed(int count) { unnamed_ += static_cast<std::size_t>(count); }

    /// @return whether there is an error about an element of this name on the line.
    bool has_error_about(int line, const std::string& element) const;
    bool has_errors() const { return !places_of_errors_.empty() || unnamed_ != 0; }
    bool has_warnings() const;
    /// Lines FILE:LINE: ELEMENT: TEXT on standard error, with "warning: " before the text of a
    /// warning, in the order of the file; then how many there are more.
    void print(const std::string& file_name) const;

private:
    using TextOnLine = std::pair<int, std::string>;

    std::vector<Finding> findings_;
    std::set<TextOnLine> said_;
    std::set<TextOnLine> places_of_errors_;
    std::size_t unnamed_ = 0;
};

/// Writes a line with text of a file to standard error.
void print_error(std::string_view text);

}  // namespace orvane::tools

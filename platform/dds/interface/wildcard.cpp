#include "platform/dds/interface/wildcard.hpp"

namespace pexa::dds {

// After a mismatch the search starts again behind the last wildcard for any characters. Earlier
// wildcards need no second attempt, because the last one can take up the same characters.
bool matches(std::string_view text, std::string_view pattern, Wildcards wildcards) {
    std::size_t t = 0;
    std::size_t p = 0;
    std::size_t retry_text = 0;
    std::size_t retry_pattern = std::string_view::npos;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == wildcards.any_characters) {
            retry_pattern = ++p;
            retry_text = t;
        } else if (p < pattern.size() &&
                   (pattern[p] == wildcards.one_character || pattern[p] == text[t])) {
            ++p;
            ++t;
        } else if (retry_pattern != std::string_view::npos) {
            p = retry_pattern;
            t = ++retry_text;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of(wildcards.any_characters, p) == std::string_view::npos;
}

}  // namespace pexa::dds

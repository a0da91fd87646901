#include "tools/subcommands/progress_line.hpp"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>

#include "tools/subcommands/terminal.hpp"
#include "tools/text/cells.hpp"
#include "tools/text/display_text.hpp"

namespace orvane::tools {
namespace {

constexpr std::chrono::milliseconds period{200};
constexpr const char* erase_line = "\r\x1b[K";

}  // namespace

ProgressLine::ProgressLine() : is_on_terminal_(is_terminal(STDERR_FILENO)) {}

ProgressLine::~ProgressLine() {
    clear();
}

bool ProgressLine::is_due() const {
    const std::lock_guard lock(mutex_);
    return is_on_terminal_ && Clock::now() >= next_;
}

void ProgressLine::show(const std::string& text) {
    const std::lock_guard lock(mutex_);
    if (!is_on_terminal_) {
        return;
    }
    // The last cell stays free, so that no terminal begins a new line.
    const std::size_t width = std::max<std::size_t>(terminal_width(STDERR_FILENO), 2);
    fmt::print(stderr, "{}{}", erase_line, shortened(text, width - 1));
    is_shown_ = true;
    next_ = Clock::now() + period;
}

void ProgressLine::print(const std::string& text) {
    const std::lock_guard lock(mutex_);
    clear();
    fmt::print(stderr, "orvane: {}\n", displayable(text));
}

void ProgressLine::clear() {
    if (is_shown_) {
        fmt::print(stderr, "{}", erase_line);
        is_shown_ = false;
        next_ = Clock::time_point::min();
    }
}

}  // namespace orvane::tools

#include "tools/subcommands/progress_line.hpp"

#include <fmt/format.h>
#include <poll.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>

#include "tools/subcommands/terminal.hpp"
#include "tools/text/cells.hpp"
#include "tools/text/display_text.hpp"

namespace orvane::tools {
namespace {

constexpr std::chrono::milliseconds period{200};
/// Cells of a terminal that does not tell its width.
constexpr std::size_t usual_width = 79;
constexpr const char* erase_line = "\r\x1b[K";

/// Whether a write waits for nobody. A terminal can be stopped.
bool takes_output(int descriptor) {
    pollfd output{.fd = descriptor, .events = POLLOUT, .revents = 0};
    return poll(&output, 1, 0) == 1 && (output.revents & POLLOUT) != 0;
}

}  // namespace

ProgressLine::ProgressLine() : is_on_terminal_(is_terminal(STDERR_FILENO)) {}

ProgressLine::~ProgressLine() {
    clear();
}

bool ProgressLine::is_due() const {
    const std::unique_lock lock(mutex_, std::try_to_lock);
    return lock && is_on_terminal_ && Clock::now() >= next_;
}

void ProgressLine::show(const std::string& text) {
    const std::unique_lock lock(mutex_, std::try_to_lock);
    if (!lock) {
        return;
    }
    next_ = Clock::now() + period;
    if (!is_on_terminal_ || !takes_output(STDERR_FILENO)) {
        return;
    }
    // The last cell stays free, so that no terminal begins a new line.
    const std::size_t told = terminal_width(STDERR_FILENO);
    const std::size_t width = told > 1 ? told - 1 : usual_width;
    is_shown_ = true;
    write(erase_line + shortened(text, width));
}

void ProgressLine::print(const std::string& text) {
    const std::lock_guard lock(mutex_);
    clear();
    write(fmt::format("orvane: {}\n", displayable(text)));
}

void ProgressLine::clear() {
    if (is_shown_) {
        is_shown_ = false;
        next_ = Clock::time_point::min();
        write(erase_line);
    }
}

void ProgressLine::write(const std::string& text) {
    if (std::fputs(text.c_str(), stderr) < 0) {
        // The terminal has gone.
        is_on_terminal_ = false;
        is_shown_ = false;
    }
}

}  // namespace orvane::tools

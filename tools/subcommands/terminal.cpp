#include "tools/subcommands/terminal.hpp"

#include <sys/ioctl.h>
#include <unistd.h>

namespace orvane::tools {

bool is_terminal() {
    return isatty(STDOUT_FILENO) != 0;
}

std::size_t terminal_width() {
    winsize size{};
    const bool told = is_terminal() && ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0;
    return told ? size.ws_col : 0;
}

}  // namespace orvane::tools

#include "tools/subcommands/terminal.hpp"

#include <sys/ioctl.h>

namespace orvane::tools {

bool is_terminal(int descriptor) {
    return isatty(descriptor) != 0;
}

std::size_t terminal_width(int descriptor) {
    winsize size{};
    const bool told = is_terminal(descriptor) && ioctl(descriptor, TIOCGWINSZ, &size) == 0;
    return told ? size.ws_col : 0;
}

}  // namespace orvane::tools

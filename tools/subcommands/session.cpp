#include "tools/subcommands/session.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "tools/subcommands/exit_status.hpp"
#include "tools/subcommands/stop_signal.hpp"

namespace orvane::tools {

int with_domain(const DomainOptions& domain, DomainUse use,
                const std::function<int(DomainView& view)>& action) {
    DomainOptions allowed = domain;
    if (check_access(allowed, use) == Status::failed) {
        return exit_failure;
    }
    StopSignal stop;
    stop_at_expiry(allowed, stop);
    std::string failure;
    const std::unique_ptr<Administration> administration = Administration::open(
        allowed,
        use == DomainUse::command ? Administration::Access::command : Administration::Access::read,
        failure);
    if (!administration) {
        fmt::print(stderr, "orvane: could not join domain {}: {}\n", domain.id, failure);
        return exit_failure;
    }
    const auto interruption = stop.interrupt([&] { administration->interrupt(); });
    DomainView view{*administration, !domain.security.empty()};
    return stop.conclude(action(view));
}

void print_warnings(const std::vector<std::string>& texts) {
    for (const std::string& text : texts) {
        fmt::print(stderr, "orvane: {}\n", text);
    }
}

int print_lost_domain() {
    fmt::print(stderr, "orvane: a reader or the writer failed\n");
    return exit_failure;
}

Status write_out(const std::string& text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() &&
        std::fflush(stdout) == 0) {
        return Status::ok;
    }
    print_write_failure(errno);
    return Status::failed;
}

void print_write_failure(int error) {
    fmt::print(stderr, "orvane: could not write: {}\n", std::strerror(error));
}

std::chrono::milliseconds wait_of(double seconds) {
    constexpr std::chrono::duration<double> longest = std::chrono::hours{24 * 365};
    return std::chrono::ceil<std::chrono::milliseconds>(
        std::min(std::chrono::duration<double>{seconds}, longest));
}

}  // namespace orvane::tools

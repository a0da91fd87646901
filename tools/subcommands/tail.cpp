#include "tools/subcommands/tail.hpp"

#include <cstdio>
#include <optional>
#include <vector>

#include "tools/subcommands/exit_status.hpp"
#include "tools/subcommands/follow_domain.hpp"
#include "tools/subcommands/session.hpp"

namespace orvane::tools {
namespace {

class Tail final : public DomainFollower {
public:
    explicit Tail(const TailOptions& options)
        : query_(options.display.query), display_(options.display) {}

    std::optional<int> take(std::vector<Event> events) override {
        switch (display_.show(events)) {
            case Display::Progress::goes_on:
                return std::nullopt;
            case Display::Progress::complete:
                return exit_success;
            case Display::Progress::write_failed:
                break;
        }
        return exit_failure;
    }

    void warn(const std::string& text) override { print_warnings({text}); }

    bool wants(const Logger& logger) const override { return query_.matches(logger); }

    int finish(int status, double seconds, std::uint64_t earlier) override {
        std::fputs(display_.summary(seconds, earlier).c_str(), stderr);
        return status;
    }

private:
    const LogQuery& query_;
    Display display_;
};

}  // namespace

int tail(const TailOptions& options) {
    Tail follower{options};
    return follow_domain(options.domain, options.seconds, follower);
}

}  // namespace orvane::tools

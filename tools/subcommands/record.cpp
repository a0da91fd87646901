#include "tools/subcommands/record.hpp"

#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "tools/recording/recorder.hpp"
#include "tools/subcommands/exit_status.hpp"
#include "tools/subcommands/follow_domain.hpp"
#include "tools/text/display_text.hpp"

namespace orvane::tools {
namespace {

void print_line(const std::string& text) {
    fmt::print(stderr, "orvane: {}\n", displayable(text));
}

class Recording final : public DomainFollower {
public:
    explicit Recording(const RecordOptions& options) : options_(options) {}

    /// A domain that could not be joined leaves no file behind.
    std::optional<int> begin() override {
        const std::string& path = options_.recording.path;
        int error = 0;
        recorder_ = Recorder::start(options_.recording, print_line, error);
        if (!recorder_) {
            print_line(fmt::format("{}: could not create: {}{}", path, std::strerror(error),
                                   error == EEXIST ? ", expected a name that is free" : ""));
            return exit_failure;
        }
        print_line(fmt::format("recording domain {} in {}", options_.domain_id, path));
        return std::nullopt;
    }

    std::optional<int> take(const std::vector<Event>& events) override {
        for (const Event& event : events) {
            std::visit([&](const auto& each) { keep(each); }, event);
        }
        return std::nullopt;
    }

    bool wants(const Logger& logger) const override { return options_.query.matches(logger); }

    int finish(int status, double seconds, std::uint64_t earlier) override {
        const std::uint64_t missing = recorder_->stop();
        std::string text =
            fmt::format("{} message{} in {:.1f} s", messages_, messages_ == 1 ? "" : "s", seconds);
        if (lost_ > 0) {
            text += fmt::format(", {} lost", lost_);
        }
        if (earlier > 0) {
            text += fmt::format(", {} before this recording", earlier);
        }
        if (missing > 0) {
            text += fmt::format(", {} event{} not in the recording", missing,
                                missing == 1 ? " is" : "s are");
        }
        print_line(text);
        return missing > 0 ? exit_failure : status;
    }

private:
    void keep(const MessageEvent& event) {
        if (options_.query.matches(event)) {
            ++messages_;
            recorder_->add(event);
        }
    }
    void keep(const LossEvent& event) {
        if (options_.query.matches(event.logger)) {
            lost_ += event.lost();
            recorder_->add(event);
        }
    }
    void keep(const LoggerEvent& event) {
        if (options_.query.matches(event.logger)) {
            recorder_->add(event);
        }
    }

    const RecordOptions& options_;
    std::unique_ptr<Recorder> recorder_;
    std::uint64_t messages_ = 0;
    std::uint64_t lost_ = 0;
};

}  // namespace

int record(const RecordOptions& options) {
    Recording recording{options};
    return follow_domain(options.domain_id, options.seconds, recording);
}

}  // namespace orvane::tools

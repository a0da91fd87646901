#include "tools/subcommands/record.hpp"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tools/recording/recorder.hpp"
#include "tools/subcommands/exit_status.hpp"
#include "tools/subcommands/follow_domain.hpp"
#include "tools/subcommands/progress_line.hpp"
#include "tools/subcommands/wanted_events.hpp"

namespace orvane::tools {
namespace {

class Recording final : public DomainFollower {
public:
    explicit Recording(const RecordOptions& options) : options_(options) {}

    /// A domain that could not be joined leaves no file behind.
    std::optional<int> begin() override {
        const std::string& path = options_.recording.path;
        int error = 0;
        recorder_ = Recorder::start(
            options_.recording, [this](const std::string& text) { line_.print(text); }, error);
        if (!recorder_) {
            line_.print(fmt::format("{}: could not create: {}{}", path, std::strerror(error),
                                    error == EEXIST ? ", expected a name that is free" : ""));
            return exit_failure;
        }
        line_.print(fmt::format("recording domain {} in {}", options_.domain.id, path));
        return std::nullopt;
    }

    std::optional<int> take(std::vector<Event> events) override {
        std::vector<RecordedEvent> wanted = wanted_.choose(events);
        if (!wanted.empty()) {
            recorder_->add(std::move(wanted));
        }
        if (line_.is_due()) {
            line_.show(wanted_.messages_text() + wanted_.lost_text());
        }
        return std::nullopt;
    }

    void warn(const std::string& text) override { line_.print(text); }

    bool wants(const Logger& logger) const override { return options_.query.matches(logger); }

    int finish(int status, double seconds, std::uint64_t earlier) override {
        const std::uint64_t missing = recorder_->stop();
        std::string text =
            fmt::format("{} in {:.1f} s{}", wanted_.messages_text(), seconds, wanted_.lost_text());
        if (earlier > 0) {
            text += fmt::format(", {} before this recording", earlier);
        }
        if (missing > 0) {
            text += fmt::format(", {} event{} not in the recording", missing,
                                missing == 1 ? " is" : "s are");
        }
        line_.print(text);
        return missing > 0 ? exit_failure : status;
    }

private:
    const RecordOptions& options_;
    WantedEvents wanted_{options_.query};
    ProgressLine line_;
    std::unique_ptr<Recorder> recorder_;
};

}  // namespace

int record(const RecordOptions& options) {
    Recording recording{options};
    return follow_domain(options.domain, options.seconds, recording);
}

}  // namespace orvane::tools

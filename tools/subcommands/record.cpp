#include "tools/subcommands/record.hpp"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "tools/recording/recorder.hpp"
#include "tools/subcommands/exit_status.hpp"
#include "tools/subcommands/follow_domain.hpp"
#include "tools/subcommands/progress_line.hpp"

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
        line_.print(fmt::format("recording domain {} in {}", options_.domain_id, path));
        return std::nullopt;
    }

    std::optional<int> take(std::vector<Event> events) override {
        std::vector<RecordedEvent> wanted;
        wanted.reserve(events.size());
        for (Event& event : events) {
            std::visit(
                [&](auto& each) {
                    if (counts(each)) {
                        wanted.emplace_back(std::move(each));
                    }
                },
                event);
        }
        if (!wanted.empty()) {
            recorder_->add(std::move(wanted));
        }
        if (line_.is_due()) {
            line_.show(messages_text() + lost_text());
        }
        return std::nullopt;
    }

    bool wants(const Logger& logger) const override { return options_.query.matches(logger); }

    int finish(int status, double seconds, std::uint64_t earlier) override {
        const std::uint64_t missing = recorder_->stop();
        std::string text = fmt::format("{} in {:.1f} s{}", messages_text(), seconds, lost_text());
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
    /// Counts an event that is asked for. @return whether it is
    bool counts(const MessageEvent& event) {
        const bool is_wanted = options_.query.matches(event);
        messages_ += is_wanted ? 1 : 0;
        return is_wanted;
    }
    bool counts(const LossEvent& event) {
        const bool is_wanted = wants(event.logger);
        lost_ += is_wanted ? event.lost() : 0;
        return is_wanted;
    }
    bool counts(const LoggerEvent& event) const { return wants(event.logger); }

    std::string messages_text() const {
        return fmt::format("{} message{}", messages_, messages_ == 1 ? "" : "s");
    }
    std::string lost_text() const { return lost_ > 0 ? fmt::format(", {} lost", lost_) : ""; }

    const RecordOptions& options_;
    ProgressLine line_;
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

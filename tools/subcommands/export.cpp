#include "tools/subcommands/export.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "tools/export/exporter.hpp"
#include "tools/export/journal_sink.hpp"
#include "tools/export/otlp_sink.hpp"
#include "tools/subcommands/exit_status.hpp"
#include "tools/subcommands/follow_domain.hpp"
#include "tools/subcommands/progress_line.hpp"
#include "tools/subcommands/wanted_events.hpp"
#include "tools/text/time_text.hpp"

namespace orvane::tools {
namespace {

class Export final : public DomainFollower {
public:
    Export(const ExportOptions& options, std::unique_ptr<ExportSink> sink)
        : options_(options), sink_(std::move(sink)) {}

    std::optional<int> begin() override {
        line_.print(fmt::format("exporting domain {} to {}", options_.domain.id, sink_->name()));
        exporter_ =
            std::make_unique<Exporter>(std::move(sink_), ExportLimits{.buffer = options_.buffer},
                                       [this](const std::string& text) { line_.print(text); });
        return std::nullopt;
    }

    std::optional<int> take(std::vector<Event> events) override {
        // After a flood there are many, and what is copied of them at a time takes memory, too.
        constexpr std::size_t largest_part = 512;
        const std::int64_t now = wall_clock();
        for (std::span<Event> rest{events}; !rest.empty();) {
            const std::span<Event> part = rest.first(std::min(rest.size(), largest_part));
            exporter_->add(wanted_.choose(part), now);
            rest = rest.subspan(part.size());
        }
        if (line_.is_due()) {
            const ExportCounts counts = exporter_->counts();
            line_.show(
                fmt::format("{}{}, {} waiting{}", records_text(counts.sent), wanted_.lost_text(),
                            counts.added - counts.sent - counts.given_up, given_up_text(counts)));
        }
        return std::nullopt;
    }

    void warn(const std::string& text) override { line_.print(text); }

    bool wants(const Logger& logger) const override { return options_.query.matches(logger); }

    int finish(int status, double seconds, std::uint64_t earlier) override {
        const ExportCounts counts = exporter_->stop();
        std::string text = fmt::format("{} in {:.1f} s{}", records_text(counts.sent), seconds,
                                       wanted_.lost_text());
        if (earlier > 0) {
            text += fmt::format(", {} before this export", earlier);
        }
        line_.print(text + given_up_text(counts));
        return counts.given_up > 0 ? exit_failure : status;
    }

    void let_go() override { exporter_.reset(); }

private:
    static std::string records_text(std::uint64_t count) {
        return fmt::format("{} record{} sent", count, count == 1 ? "" : "s");
    }
    static std::string given_up_text(const ExportCounts& counts) {
        return counts.given_up > 0 ? fmt::format(", {} given up", counts.given_up) : "";
    }

    const ExportOptions& options_;
    WantedEvents wanted_{options_.query};
    ProgressLine line_;
    std::unique_ptr<ExportSink> sink_;  ///< until the domain has been joined
    std::unique_ptr<Exporter> exporter_;
};

int run(const ExportOptions& options, std::unique_ptr<ExportSink> sink) {
    Export follower{options, std::move(sink)};
    return follow_domain(options.domain, options.seconds, follower);
}

}  // namespace

int export_otlp(const OtlpExportOptions& options) {
    return run(options.common, make_otlp_sink({.url = options.url,
                                               .headers = options.headers,
                                               .authorities = options.authorities}));
}

int export_journal(const JournalExportOptions& options) {
    return run(options.common, make_journal_sink(options.socket));
}

}  // namespace orvane::tools

// Whether viewers account for every message: those that they have seen, those that they say were
// lost, and those from before they came, are as many as were logged.

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <random>

#include "tests/integration/programs.hpp"

namespace orvane::tests {
namespace {

using namespace std::chrono_literals;

struct Account {
    std::uint64_t seen = 0;
    std::uint64_t lost = 0;
    std::uint64_t earlier = 0;
    std::string losses;  ///< as the viewer said
};

/// The number before a text of the viewer's summary, or 0.
std::uint64_t number_before(const std::string& summary, const std::string& text) {
    const std::size_t end = summary.find(text);
    if (end == std::string::npos) {
        return 0;
    }
    const std::size_t begin = summary.rfind(' ', end - 1);
    return std::stoull(summary.substr(begin + 1));
}

/// Ends a viewer. @return what it has accounted for
Account account_of(Viewer& viewer) {
    viewer.process().send_signal(SIGINT);
    EXPECT_EQ(viewer.process().wait_for_end(), "exit 0") << viewer.process().transcript();
    const Output output = viewer.process().output();
    Account account;
    for (const std::string& line : output.out) {
        const auto object = nlohmann::json::parse(line);
        if (object["type"] == "message") {
            ++account.seen;
        } else if (object["type"] == "loss") {
            account.lost += object["lost"].get<std::uint64_t>();
            account.losses += '\n' + line;
        }
    }
    for (const std::string& line : output.error) {
        account.earlier += number_before(line, " before this viewer");
    }
    return account;
}

/// One run: what happens in it follows from the seed.
class Scenario {
public:
    explicit Scenario(unsigned long seed) : random_(static_cast<std::mt19937::result_type>(seed)) {}

    void run() {
        constexpr const char* loses_packets =
            ",<CycloneDDS><Domain Id=\"any\"><Internal><Test><XmitLossiness>50</XmitLossiness>"
            "</Test></Internal></Domain></CycloneDDS>";
        // A viewer that is stopped for longer is lost, and comes back.
        constexpr const char* is_soon_lost =
            ",<CycloneDDS><Domain Id=\"any\"><Discovery><LeaseDuration>500 ms</LeaseDuration>"
            "</Discovery></Domain></CycloneDDS>";
        const std::string uri = std::getenv("CYCLONEDDS_URI");
        launcher_ = {"env", "CYCLONEDDS_URI=" + uri + (chance(3) ? loses_packets : ""),
                     "PEXA_QOS_PROFILES=" ORVANE_STATISTICS_PROFILE};
        const Words viewer_launcher{"env",
                                    "CYCLONEDDS_URI=" + uri + (chance(3) ? is_soon_lost : "")};
        Viewer first{{}, viewer_launcher};
        std::optional<Viewer> killed(std::in_place);
        std::optional<Viewer> late;

        const int loggers = between(1, 3);
        for (int i = 0; i < loggers; ++i) {
            start_logger();
        }
        meet(first);
        for (int round = 0; round < 4; ++round) {
            const bool stops = chance(3);
            if (stops) {
                first.process().send_signal(SIGSTOP);
            }
            flood();
            if (stops) {
                std::this_thread::sleep_for(std::chrono::milliseconds{between(1, 1500)});
                first.process().send_signal(SIGCONT);
            }
            if (round == 1) {
                killed.reset();
            }
            if (round == 2 && chance(2)) {
                end_logger();
                start_logger();
                meet(first);
            }
            if (round == 2) {
                late.emplace();
                logged_before_late_ = logged_;
                meet(*late);
            }
        }
        while (!applications_.empty()) {
            end_logger();
        }
        // Longer than a viewer waits for what may still come.
        std::this_thread::sleep_for(2500ms);
        EXPECT_EQ(logged_, ordered_) << "the library's own count";
        expect_account_of(first, logged_);
        expect_account_of(*late, logged_ - logged_before_late_);
    }

    /// A logger names the last sixteen viewers. All of these come while it runs.
    void run_with_crowd() {
        launcher_ = {"env", "PEXA_QOS_PROFILES=" ORVANE_STATISTICS_PROFILE};
        start_logger();
        std::vector<std::unique_ptr<Viewer>> viewers;
        for (int i = 0; i < 18; ++i) {
            viewers.push_back(std::make_unique<Viewer>());
            if (chance(2)) {
                meet(*viewers.back());
            } else {
                flood(300);
            }
        }
        for (const auto& viewer : viewers) {
            meet(*viewer);
        }
        flood(300);
        end_logger();
        std::this_thread::sleep_for(2500ms);
        for (const auto& viewer : viewers) {
            expect_account_of(*viewer, logged_);
        }
    }

private:
    /// Until the viewer has seen a message of each logger. A lossy network makes them meet late.
    void meet(Viewer& viewer) {
        const auto has_met_all = [&](const std::vector<ViewedMessage>& messages) {
            return std::ranges::all_of(identities_, [&](const std::string& logger) {
                return std::ranges::any_of(messages, [&](const ViewedMessage& message) {
                    return message.application == logger;
                });
            });
        };
        bool has_met = false;
        for (int time = 0; time < 200 && !has_met; ++time) {
            for (const auto& application : applications_) {
                EXPECT_EQ(application->ask("log 400 1 0"), "log");
                ++ordered_;
            }
            has_met = viewer.wait_until(has_met_all, 200ms);
        }
        EXPECT_TRUE(has_met);
    }

    static void expect_account_of(Viewer& viewer, std::uint64_t logged) {
        const Account account = account_of(viewer);
        EXPECT_EQ(account.seen + account.lost + account.earlier, logged)
            << "seen " << account.seen << ", lost " << account.lost << ", before "
            << account.earlier << account.losses;
    }

    int between(int least, int most) {
        return std::uniform_int_distribution<int>(least, most)(random_);
    }
    bool chance(int of) { return between(1, of) == 1; }

    void start_logger() {
        // Powers of two, so that small queues are as likely as large ones.
        const std::string queue = std::to_string(1 << between(0, 13));
        applications_.push_back(
            std::make_unique<Application>(Words{"--kind", "pump", "--queue", queue}, launcher_));
        identities_.push_back(applications_.back()->ask("identity"));
    }
    void end_logger() {
        Application& application = *applications_.back();
        EXPECT_EQ(application.ask("finish"), "finish 0");
        logged_ += std::stoull(application.ask("logged"));
        applications_.pop_back();
        identities_.pop_back();
    }
    void flood(int most = 3000) {
        const int count = between(1, most);
        ordered_ += applications_.size() * static_cast<std::size_t>(count);
        const std::string command = "log 400 " + std::to_string(count) + " 0";
        for (const auto& application : applications_) {
            application->start(command);
        }
        for (const auto& application : applications_) {
            EXPECT_EQ(application->answer(), "log");
        }
    }

    std::mt19937 random_;
    Words launcher_;
    std::vector<std::unique_ptr<Application>> applications_;
    std::vector<std::string> identities_;  ///< of the applications
    std::uint64_t logged_ = 0;             ///< by loggers that have ended
    std::uint64_t logged_before_late_ = 0;
    std::uint64_t ordered_ = 0;
};

unsigned long first_seed() {
    const char* first = std::getenv("ORVANE_ACCOUNTING_SEED");
    return first != nullptr ? std::stoul(first) : 1;
}

TEST(Accounting, ExplainsEveryMessage) {
    const char* runs = std::getenv("ORVANE_ACCOUNTING_RUNS");
    const unsigned long seed = first_seed();
    for (unsigned long i = 0; i < (runs != nullptr ? std::stoul(runs) : 2); ++i) {
        SCOPED_TRACE("seed " + std::to_string(seed + i));
        std::printf("seed %lu\n", seed + i);
        Scenario(seed + i).run();
    }
}

TEST(Accounting, ExplainsEveryMessageToManyViewers) {
    Scenario(first_seed()).run_with_crowd();
}

}  // namespace
}  // namespace orvane::tests

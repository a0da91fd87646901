// Who may do what in a domain with DDS Security. An honest logger and an honest operator are there
// all the time, and look at what each intruder achieves. The engines of the intruders do not ask
// whether they may: what refuses them are the honest ones.
#include <algorithm>
#include <array>
#include <functional>

#include "tests/integration/programs.hpp"
#include "tests/security/packet_watch.hpp"
#include "tests/security/plant.hpp"

namespace orvane::tests {
namespace {

constexpr const char* secret = "valve 7 leaks";

enum Column { reads_logs, reads_state, sets_level, publishes_as_another, sees_text, column_count };
constexpr std::array<const char*, column_count> column_names = {
    "reads logs", "reads State", "sets level", "publishes in another's name",
    "sees text in packets"};
using Cells = std::array<bool, column_count>;

struct Intruder {
    const char* name;
    /// What starts it. @param plant where its credentials are
    std::function<Words(const Plant& plant)> launcher;
    Cells expected;
};

bool has_all(const Cells& achieved, const Cells& expected) {
    return std::equal(achieved.begin(), achieved.end(), expected.begin(),
                      [](bool is, bool should_be) { return is || !should_be; });
}

bool contains(const std::vector<std::string>& lines, const std::string& text) {
    for (const std::string& line : lines) {
        if (line.find(text) != std::string::npos) {
            return true;
        }
    }
    return false;
}

/// An application and an operator's viewer, who have met.
class HonestPair {
public:
    /// @param operator_options of the tool
    HonestPair(const Words& application_launcher, Words operator_options)
        : operator_options_(std::move(operator_options)),
          application_({"--kind", "pump"}, application_launcher),
          viewer_(operator_options_) {
        EXPECT_TRUE(connect(application_, viewer_)) << viewer_.process().transcript();
    }

    /// Ends the application as it ends itself.
    void finish() {
        EXPECT_EQ(application_.ask("finish"), "finish 0");
        application_.process().close_input();
        EXPECT_EQ(application_.process().wait_for_end(), "exit 0")
            << application_.process().transcript();
    }

    /// What the intruder achieves. Whatever it may not do is looked for after others, who came
    /// later, have done that.
    Cells achievements_of(const Intruder& intruder, Words command) {
        watch_.forget();
        const std::string text = std::string{"forged by "} + intruder.name;
        command.insert(command.end(), {ORVANE_INTRUDER, domain(), identity_, text});
        ChildProcess process{command};
        // What does not get as far as that would be refused by nobody.
        EXPECT_TRUE(process.wait_for_line("joined")) << intruder.name << process.transcript();

        Cells achieved{};
        const auto look = [&] {
            const Output output = process.output();
            achieved[reads_logs] = contains(output.out, column_names[reads_logs]);
            achieved[reads_state] = contains(output.out, column_names[reads_state]);
            achieved[sets_level] = level() == "TRACE";
            achieved[publishes_as_another] = viewer_.wait_until(
                [&](const auto& messages) {
                    return std::any_of(messages.begin(), messages.end(),
                                       [&](const auto& message) { return message.text == text; });
                },
                std::chrono::milliseconds{0});
            achieved[sees_text] = watch_.has_seen_text();
        };
        const auto deadline = std::chrono::steady_clock::now() + patience;
        do {
            say_secret();
            look();
        } while (!has_all(achieved, intruder.expected) &&
                 std::chrono::steady_clock::now() < deadline);
        say_secret();
        look();
        EXPECT_TRUE(watch_.has_seen_packets());
        if (!operator_options_.empty()) {
            expect_true_names(text);
        }
        process.close_input();
        EXPECT_EQ(process.wait_for_end(), "exit 0") << process.transcript();
        restore_level();
        return achieved;
    }

private:
    /// The viewer tells who has published a text, and that it is sure of that.
    void expect_true_names(const std::string& text) {
        for (const std::string& line : viewer_.process().output().out) {
            if (line.find(text) != std::string::npos) {
                EXPECT_NE(line.find(R"("authenticated":true)"), std::string::npos) << line;
            }
        }
    }
    /// Has the application log it, until the viewer has it.
    void say_secret() {
        const std::size_t before = viewer_.messages(category_).size();
        application_.say(600, category_, secret);
        EXPECT_TRUE(viewer_.wait_for(before + 1, category_)) << viewer_.process().transcript();
    }

    std::vector<std::string> output_of(Words arguments) {
        arguments.insert(arguments.end(), {"--timeout", "30"});
        arguments.insert(arguments.end(), operator_options_.begin(), operator_options_.end());
        ChildProcess tool{tool_in_domain(std::move(arguments))};
        EXPECT_EQ(tool.wait_for_end(), "exit 0") << tool.transcript();
        return tool.output().out;
    }
    /// As an operator sees it who joins now.
    std::string level() {
        return contains(output_of({"list", "--json"}), R"("filter_level_name":"TRACE")") ? "TRACE"
                                                                                         : "INFO";
    }
    void restore_level() { output_of({"set-level", identity_, "INFO"}); }

    static constexpr const char* category_ = "secrets";

    Words operator_options_;
    PacketWatch watch_{secret};
    Application application_;
    Viewer viewer_;
    std::string identity_ = application_.ask("identity");
};

/// A network of its own for the process, because only there it may look at packets.
class AccessControl : public testing::Test {
protected:
    static void SetUpTestSuite() { obstacle_ = enter_own_network(); }
    void SetUp() override {
        if (!obstacle_.empty()) {
            GTEST_SKIP() << obstacle_;
        }
    }

    static void expect(const Intruder& intruder, const Cells& achieved) {
        for (std::size_t column = 0; column < column_count; ++column) {
            const auto word = [](bool value) { return value ? "yes" : "no"; };
            EXPECT_EQ(achieved[column], intruder.expected[column])
                << intruder.name << ": " << column_names[column] << ": expected "
                << word(intruder.expected[column]) << ", was " << word(achieved[column]);
        }
    }

private:
    static inline std::string obstacle_;
};

/// With credentials of a name of the plant.
std::function<Words(const Plant&)> with(const std::string& name,
                                        const std::string& authority = "plant") {
    return
        [=](const Plant& plant) { return plant.dishonest_launcher(plant.folder(name, authority)); };
}
/// Shows others a file instead of its permissions.
std::function<Words(const Plant&)> showing(const std::string& name,
                                           const std::function<std::string(const Plant&)>& file) {
    return [=](const Plant& plant) {
        Words launcher = plant.dishonest_launcher(plant.folder(name));
        launcher.push_back("INTRUDER_PERMISSIONS=" + file(plant));
        return launcher;
    };
}
Words in_the_past(const Plant& plant) {
    Words launcher = plant.dishonest_launcher(plant.folder("expired"));
    launcher.push_back("INTRUDER_CLOCK=" + std::to_string(plant.begin()));
    return launcher;
}

TEST_F(AccessControl, EveryRoleMayDoWhatItIsForAndOthersNothing) {
    const Plant plant;
    const auto everything = Plant::all_rights();
    plant.issue("pump", tools::rights_of(tools::Role::application));
    plant.issue("otto", tools::rights_of(tools::Role::operator_));
    plant.issue("application", tools::rights_of(tools::Role::application));
    plant.issue("viewer", tools::rights_of(tools::Role::viewer));
    plant.issue("operator", tools::rights_of(tools::Role::operator_));
    plant.issue("stranger", everything, {.authority = "elsewhere"});
    plant.issue("viewer", everything, {.authority = "elsewhere"});
    plant.issue("expired", everything, {.days = 1});
    plant.issue("revoked", everything);
    plant.issue("elsewhere", everything, {.domains = {{9, 9}}});
    plant.issue("other",
                {{tools::Direction::publish, {"other"}}, {tools::Direction::subscribe, {"other"}}});
    plant.revoke("revoked");

    const auto changed = [](const Plant& of) { return of.changed_permissions("viewer"); };
    const auto own = [](const Plant& of) { return of.own_permissions("viewer"); };
    const auto foreign = [](const Plant& of) {
        return of.folder("viewer", "elsewhere") + "/permissions.p7s";
    };
    // clang-format off
    const Intruder intruders[] = {
        //                                                       logs   State  level  publishes text
        {"application",              with("application"),       {false, false, false, true,  false}},
        {"viewer",                   with("viewer"),            {true,  true,  false, false, false}},
        {"operator",                 with("operator"),          {true,  true,  true,  false, false}},
        {"none",                     [](const Plant&) { return Words{}; }, {}},
        {"foreign authority",        with("stranger", "elsewhere"), {}},
        {"forged permissions",       showing("viewer", changed), {}},
        {"permissions of a foreign authority", showing("viewer", foreign), {}},
        {"permissions signed by itself", showing("viewer", own), {}},
        {"expired",                  in_the_past,               {}},
        {"revoked",                  with("revoked"),           {}},
        {"wrong domain",             with("elsewhere"),         {}},
        {"other topic",              with("other"),             {}},
    };
    // clang-format on
    HonestPair honest{plant.launcher(plant.folder("pump")), {"--security", plant.folder("otto")}};
    for (const Intruder& intruder : intruders) {
        expect(intruder, honest.achievements_of(intruder, intruder.launcher(plant)));
    }
    honest.finish();
}

TEST_F(AccessControl, IsNothingThatALoggerHasByItself) {
    const Intruder anybody{"without security", nullptr, {true, true, true, true, true}};
    HonestPair honest{{}, {}};
    expect(anybody, honest.achievements_of(anybody, {}));
}

}  // namespace
}  // namespace orvane::tests
